#include "workbench/dialogs/CCodingDesk.h"

#include <QLineEdit>

#include "controls/CPipeStrip.h"
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/defectcommands.h"
#include "defects/recordchanges.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/projectsettings.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "store/sectionform.h"
#include "workbench/coding/codingstore.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/coding/openruns.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int MessageNoVideoLoaded = 2194;
constexpr int PlayHeadEvery = 100;  // milliseconds

QString FavouritesKey(const std::string& standard) {
    return "Favourites/" + ToQt(standard).replace('/', '_');
}

}  // namespace

CCodingDesk::CCodingDesk(CDlgProAtrrib& window, CCodingLine& line, CPipeStrip& strip)
    : m_window(window), m_line(line), m_strip(strip) {
    m_line.Understand = [this](const CodingLine& typed) { return Understand(typed); };
    m_line.OnEnter = [this] { m_window.Run(CommandStoreCoded); };
    m_line.OnForm = [this] { m_window.Run(CommandFormCoded); };
    m_line.OnLeave = [this] {
        CloseLine();
        m_window.Player().setFocus();
    };
    m_line.OnGiveLength = [this] { m_window.Run(CommandGiveLength); };
    m_line.OnFavourite = [this](int place) { m_window.Run(CommandFavourite + place); };
    m_line.OnFixFavourite = [this](int place) { FixFavourite(place); };
    m_strip.SetEmptyText(MessageText(MessageChoosePipe));
    m_strip.OnFlag = [this](std::int32_t record) { (void)m_window.DefectList().SelectRowOf(record); };
    m_strip.OnPlace = [this](double metres) {
        if (const auto seconds = m_track.SecondsAt(metres)) {
            m_window.Player().Controls().SetCurrentPosition(*seconds);
        }
    };
    m_playHead.callOnTimeout(&m_window, [this] { ShowPlayHead(); });
    m_playHead.start(PlayHeadEvery);
}

const _TESTING_DATA* CCodingDesk::Section() const {
    return m_window.Session().Database() == nullptr ? nullptr : m_window.SectionList().SelectedSection();
}

// The list of defects may still be that of another section: the rows tell.
std::vector<_REC_DATA> CCodingDesk::SectionRuns() const {
    const _TESTING_DATA* section = Section();
    std::vector<_REC_DATA> runs;
    if (section != nullptr) {
        runs = OpenRuns(*m_window.Session().Database(), m_window.DefectList().Records());
        std::erase_if(runs, [&](const _REC_DATA& run) { return run.TestingID != section->ID; });
    }
    return runs;
}

CodingMeaning CCodingDesk::Understand(const CodingLine& line) const {
    const _TESTING_DATA* section = Section();
    return section == nullptr
               ? CodingMeaning()
               : UnderstandCoding(line, *m_window.Session().Database(), *section, SectionRuns());
}

void CCodingDesk::Follow() {
    const _TESTING_DATA* section = Section();
    if (section == nullptr) {
        m_strip.SetStrip({});
        m_track = {};
        CloseLine();
        return;
    }
    ReadFavourites();
    if (!m_line.isHidden()) {
        m_section = section->ID;
        m_line.Refresh();
    }
    if (m_strip.isHidden()) {
        return;
    }
    CRecDataArray records;
    for (const _REC_DATA& record : m_window.DefectList().Records()) {
        if (record.TestingID == section->ID) {
            records.Add(record);
        }
    }
    m_track = CVideoTrack(records, section->FirstVideo());
    m_strip.SetStrip(MakeSectionStrip(*section, records, SectionRuns(), *m_window.Session().Database()));
    m_strip.SetPlaceTip(m_track.IsKnown() ? MessageText(MessageGoToPlace) : QString("%s"));
    FollowRecord();
}

void CCodingDesk::FollowRecord() {
    const _REC_DATA* record = m_window.DefectList().SelectedRecord();
    m_strip.Select(record == nullptr ? -1 : record->ID);
}

void CCodingDesk::ShowPlayHead() {
    if (m_strip.isVisible()) {
        m_strip.SetPlayHead(m_window.Player().URL().empty()
                                ? std::nullopt
                                : m_track.DistanceAt(m_window.Player().Controls().CurrentPosition()));
    }
}

void CCodingDesk::ReadFavourites() {
    const std::string& standard = m_window.Session().CriterionName();
    if (standard != m_favouritesOf) {
        m_favouritesOf = standard;
        m_favourites = CFavourites(FromQt(UserSetting(FavouritesKey(standard)).toString()));
        m_line.ShowFavourites(m_favourites);
    }
}

void CCodingDesk::Learn(const std::string& codeAndGrade) {
    m_favourites.Learn(codeAndGrade);
    KeepUserSetting(FavouritesKey(m_favouritesOf), ToQt(m_favourites.Text()));
    m_line.ShowFavourites(m_favourites);
}

void CCodingDesk::FixFavourite(int place) {
    const std::string typed = CodeAndGrade(Understand(m_line.Typed()));
    // With nothing typed a place that was fixed is given back to learning.
    if (!typed.empty() || m_favourites.IsFixed(place)) {
        m_favourites.Fix(place, typed);
        KeepUserSetting(FavouritesKey(m_favouritesOf), ToQt(m_favourites.Text()));
        m_line.ShowFavourites(m_favourites);
    }
}

void CCodingDesk::Open(const std::string& begin) {
    const bool needsFrame = !begin.starts_with(']');
    if (needsFrame && m_window.Player().URL().empty()) {
        ShowMessage(MessageNoVideoLoaded);
        return;
    }
    m_window.Player().SetFullScreen(false);
    m_window.Player().Controls().Pause();
    ReadFavourites();
    m_section = Section()->ID;
    m_line.Open(begin);
    m_window.FocusAfter = &m_line.Line();
}

void CCodingDesk::OpenLast() {
    Open(m_last.empty() ? std::string() : m_last + " ");
}

void CCodingDesk::OpenFavourite(int place) {
    ReadFavourites();
    const std::string& code = m_favourites.At(place);
    Open(code.empty() ? std::string() : code + " ");
}

void CCodingDesk::CloseLine() {
    m_line.Close();
    m_section = -1;
}

void CCodingDesk::Store() {
    const _TESTING_DATA section = *Section();
    if (m_line.isHidden()) {
        return;
    }
    const bool sameSection = section.ID == m_section;
    m_section = section.ID;
    const CodingMeaning meaning = Understand(m_line.Typed());
    m_window.FocusAfter = &m_line.Line();
    if (!sameSection || (!meaning.IsComplete() && !meaning.Manhole)) {
        m_line.ShowProblem();
        m_window.FocusAfter = m_line.focusWidget() == nullptr ? &m_line.Line() : m_line.focusWidget();
        return;
    }
    CRecExport& database = *m_window.Session().Database();
    const std::string video = m_window.Player().URL();
    m_window.Player().Controls().Pause();  // it may have been set going while the line was open
    const double seconds = m_window.Player().Controls().CurrentPosition();
    if (meaning.Mark != CodingLine::Run::Ends && video.empty()) {
        ShowMessage(MessageNoVideoLoaded);
        return;
    }
    if (meaning.Manhole) {
        CloseLine();
        m_window.FocusAfter = &m_window.Player();
        (void)NewManholeDefect(database, section, video, seconds, &m_window, CodedRecord(meaning));
        return;
    }
    const CWaitCursor wait;
    const auto stored = meaning.Mark == CodingLine::Run::Ends
                            ? EndCodedRun(database, meaning)
                            : StoreCoded(database, section, video, seconds, meaning);
    if (!stored) {
        return;  // told; what was typed stays
    }
    if (meaning.Mark != CodingLine::Run::Ends) {
        m_last = CodeAndGrade(meaning);
        Learn(m_last);
    }
    CloseLine();
    m_window.FocusAfter = &m_window.Player();
}

void CCodingDesk::OpenForm() {
    if (m_line.isHidden()) {
        return;
    }
    if (m_window.Player().URL().empty()) {
        ShowMessage(MessageNoVideoLoaded);
        return;
    }
    const _TESTING_DATA section = *Section();
    const CodingMeaning meaning = Understand(m_line.Typed());
    CloseLine();
    m_window.FocusAfter = &m_window.Player();
    m_window.Player().Controls().Pause();
    const double seconds = m_window.Player().Controls().CurrentPosition();
    const auto open = meaning.Manhole ? NewManholeDefect : NewDefect;
    (void)open(*m_window.Session().Database(), section, m_window.Player().URL(), seconds, &m_window,
               CodedRecord(meaning));
}

void CCodingDesk::GiveLength() {
    const std::optional<_TESTING_DATA> changed = WithPipeLength(*Section());
    if (changed) {
        (void)m_window.Session().Database()->UpdateTesting(*changed);
    }
    m_window.FocusAfter = &m_line.Line();
}

void CCodingDesk::Walk(int step) {
    const std::int32_t record = m_strip.isHidden() ? -1 : m_strip.Neighbour(step);
    if (record >= 0) {
        m_window.Session().GoTo(Section()->ID, record);
    }
}
