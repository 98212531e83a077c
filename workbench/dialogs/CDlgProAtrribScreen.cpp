// The review window as the screen of its session: lists, player, pictures and timers.
#include <QLineEdit>

#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/CPicturePanel.h"
#include "defects/dialogs/CPointView.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "workbench/dialogs/CCodingDesk.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int IdCriterionName = 1017;
constexpr int IdProjectName = 1022;

constexpr int Deferral = 20;  // milliseconds
constexpr int Poll = 200;
constexpr int RememberEvery = 15'000;

}  // namespace

void CDlgProAtrrib::FillSections(CDbRec& database) {
    const int current = m_sections->currentIndex().row();
    (void)m_sections->Fill(database);  // has told its message
    m_sections->RebuildHasDefects();
    m_sections->SetCurrentRow(current);
}

void CDlgProAtrrib::FillDefects(CDbRec& database, std::int32_t sectionId) {
    const int current = m_defects->currentIndex().row();
    (void)m_defects->Fill(database, sectionId);
    m_defects->SetCurrentRow(current);
    m_coding->Follow();
}

void CDlgProAtrrib::ClearDefects() {
    m_defects->Clear();
}

const CTestingDataArray& CDlgProAtrrib::Sections() const {
    return m_sections->Sections();
}

const CRecDataArray& CDlgProAtrrib::Records() const {
    return m_defects->Records();
}

const _TESTING_DATA* CDlgProAtrrib::SelectedSection() const {
    return m_sections->SelectedSection();
}

const _REC_DATA* CDlgProAtrrib::SelectedRecord() const {
    return m_defects->SelectedRecord();
}

bool CDlgProAtrrib::SelectSection(std::int32_t id) {
    return m_sections->SelectRowOf(id);
}

bool CDlgProAtrrib::SelectRecord(std::int32_t id) {
    return m_defects->SelectRowOf(id);
}

void CDlgProAtrrib::LoadVideo(std::string_view pathText) {
    m_player->Controls().Stop();
    m_player->SetURL(pathText);
    RememberPlace();
    // A crash loses no more of it than that.
    m_rememberPlace.start(RememberEvery);
}

std::string CDlgProAtrrib::Video() const {
    return m_player->URL();
}

double CDlgProAtrrib::Duration() const {
    return m_player->Duration();
}

void CDlgProAtrrib::Seek(double seconds) {
    m_player->Controls().SetCurrentPosition(seconds);
}

void CDlgProAtrrib::ShowPicture(std::string_view pathText) {
    m_coding->FollowRecord();
    const _REC_DATA* record = pathText.empty() ? nullptr : SelectedRecord();
    if (record == nullptr) {
        m_pictures->Show({}, {}, {});
    } else {
        m_pictures->Show(
            record->GetPicture1(), record->GetPicture2(),
            record->DefectCode + "  " + FormatNumber(static_cast<double>(record->DistanceStart), 2) + " m");
    }
    if (pathText.empty()) {
        m_canvas->ClearPicture();
    } else {
        (void)m_canvas->ShowPicture(pathText);
    }
}

void CDlgProAtrrib::ShowMarkers(const Markers& markers) {
    if (markers.Flags.empty()) {
        m_ruler->ClearMarkers();
    } else {
        m_ruler->UpdateMarkers(markers.Flags);
    }
}

void CDlgProAtrrib::ShowState() {
    const bool open = m_session.Database() != nullptr;
    m_sections->SetEmptyText(MessageText(open ? MessageNoSections : MessageNoProject));
    const int nothing = SelectedSection() == nullptr ? MessageChooseSection : MessageNoDefects;
    m_defects->SetEmptyText(MessageText(open ? nothing : MessageNoProjectVideo));
    const int noVideo = SelectedSection() == nullptr ? MessageChooseVideo : MessageNoVideo;
    m_player->SetEmptyText(LoadMessage(open ? noVideo : MessageNoProjectVideo));
    Item<QLineEdit>(IdProjectName)->setText(ToQt(m_session.ProjectName()));
    Item<QLineEdit>(IdCriterionName)->setText(ToQt(m_session.CriterionName()));
    UpdateTitle();
    if (open && m_session.IsReadOnly()) {
        m_sections->FixOrder();
    }
    ShowCommands();
    ShowGrade();
    ShowCheck();
    m_coding->Follow();
}

void CDlgProAtrrib::StartTimer(Timer timer) {
    SetTimer(static_cast<int>(timer), timer == Timer::Duration ? Poll : Deferral);
}

void CDlgProAtrrib::StopTimer(Timer timer) {
    KillTimer(static_cast<int>(timer));
}

void CDlgProAtrrib::OnTimer(int id) {
    m_session.OnTimer(static_cast<Timer>(id));
}
