#include "workbench/CReviewSession.h"

#include <algorithm>

#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"

namespace {

using Timer = CReviewScreen::Timer;

constexpr int MessageFileGone = 3330;
constexpr int MessageSaveCopy = 3331;
constexpr int MessageNotSaved = 3332;

template <class Array>
std::int32_t HighestId(const Array& rows) {
    std::int32_t highest = 0;
    for (const auto& row : rows) {
        highest = std::max(highest, row.ID);
    }
    return highest;
}

// The first in the list of those that weren't there before; `otherwise` if there is none.
template <class Array>
std::int32_t MadeOr(const Array& rows, std::int32_t lastBefore, std::int32_t otherwise) {
    const auto made =
        std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.ID > lastBefore; });
    return made == rows.end() ? otherwise : made->ID;
}

}  // namespace

CReviewSession::CReviewSession(CReviewScreen& screen) : m_screen(screen) {}

CReviewSession::~CReviewSession() = default;

bool CReviewSession::Open(std::string_view path) {
    auto database = std::make_unique<CRecExport>();
    _PRO_DATA project;
    if (!database->OpenDatabase(path, CDbPassword) || !database->ReadAttrib(project)) {
        return false;
    }
    m_database = std::move(database);
    m_path = path;
    m_toldGone = false;
    SetNames(project.ProjectName, project.CriterionName);
    RefreshLists();
    return true;
}

void CReviewSession::SetNames(std::string_view project, std::string_view criterion) {
    m_name = project;
    m_criterion = criterion;
    m_screen.ShowState();
}

void CReviewSession::ReadNames() {
    _PRO_DATA project;
    if (m_database != nullptr && m_database->ReadAttrib(project)) {
        SetNames(project.ProjectName, project.CriterionName);
    }
}

bool CReviewSession::IsReadOnly() const {
    return m_database != nullptr && m_database->IsReadOnly();
}

bool CReviewSession::Meets(ReviewNeed need) const {
    const bool section = m_database != nullptr && m_screen.SelectedSection() != nullptr;
    switch (need) {
        case ReviewNeed::Nothing:
            return true;
        case ReviewNeed::Project:
            if (m_database == nullptr) {
                ShowMessage(2185);
            }
            return m_database != nullptr;
        case ReviewNeed::SectionSilently:
            return section;
        case ReviewNeed::Section:
            if (!section) {
                ShowMessage(2191);
            }
            return section;
        case ReviewNeed::Defect:
            break;
    }
    const bool defect = m_database != nullptr && m_screen.SelectedRecord() != nullptr;
    if (!defect) {
        ShowMessage(2196);
    }
    return defect;
}

void CReviewSession::OfferCopyIfGone() {
    if (m_database == nullptr || m_toldGone || !m_database->FileGone()) {
        return;
    }
    m_toldGone = true;
    if (!Prompts().AskOkCancel(MessageFileGone, LoadMessage(MessageFileGone) + "\r\n" + m_path)) {
        return;
    }
    const std::string copy = Prompts().PickSaveFile(LoadMessage(MessageSaveCopy), GetFileName(m_path), "mdb",
                                                    {{"Drovane (*.mdb)", {"*.mdb"}}});
    if (copy.empty()) {
        m_toldGone = false;  // nothing is saved yet: the next command asks again
        return;
    }
    const Place place = GetPlace();
    try {
        m_database->SaveCopy(copy);
    } catch (const CDbError&) {
        m_toldGone = false;
        ShowMessage(MessageNotSaved, copy);
        return;
    }
    if (Open(copy)) {
        (void)m_screen.SelectSection(place.Section);
        FlushSelections();
        (void)m_screen.SelectRecord(place.Record);
        FlushSelections();
    }
}

void CReviewSession::RefreshLists() {
    if (m_database != nullptr) {
        m_screen.FillSections(*m_database);
    }
    m_screen.ShowState();
    // Also where the list was empty before and is so again.
    OnSectionChanged();
}

void CReviewSession::RefillDefects() {
    if (const _TESTING_DATA* section = m_screen.SelectedSection()) {
        FillDefects(section->ID);
    } else {
        m_screen.ClearDefects();
    }
}

void CReviewSession::FillDefects(std::int32_t sectionId) {
    if (m_database != nullptr) {
        m_screen.FillDefects(*m_database, sectionId);
    }
}

void CReviewSession::OnSectionChanged() {
    m_sectionPending = true;
    m_screen.StartTimer(Timer::Section);
}

void CReviewSession::OnDefectChanged() {
    m_defectPending = true;
    m_screen.StartTimer(Timer::Defect);
}

void CReviewSession::OnTimer(Timer timer) {
    switch (timer) {
        case Timer::Section:
            SelectedSectionChanged();
            break;
        case Timer::Defect:
            SelectedDefectChanged();
            break;
        case Timer::Duration:
            PollDuration();
            break;
    }
}

void CReviewSession::FlushSelections() {
    if (m_sectionPending && StandsOnLoaded()) {
        m_sectionPending = false;
        m_screen.StopTimer(Timer::Section);
    }
    if (m_sectionPending) {
        SelectedSectionChanged();
    }
    if (m_defectPending) {
        SelectedDefectChanged();
    }
}

bool CReviewSession::StandsOnLoaded() const {
    const _TESTING_DATA* section = m_screen.SelectedSection();
    return section != nullptr && section->ID == m_loadedSection && section->FirstVideo() == m_loadedVideo;
}

void CReviewSession::SelectedSectionChanged() {
    m_sectionPending = false;
    m_screen.StopTimer(Timer::Section);
    m_screen.ClearDefects();
    const _TESTING_DATA* section = m_screen.SelectedSection();
    m_screen.ShowState();
    if (section == nullptr) {
        UnloadVideo();
        m_screen.ShowPicture({});
        return;
    }
    FillDefects(section->ID);
    m_loadedSection = section->ID;
    m_loadedVideo = section->FirstVideo();
    Load(m_loadedVideo);
}

void CReviewSession::UnloadVideo() {
    m_markers = Markers();
    m_screen.ShowMarkers(m_markers);
    m_screen.StopTimer(Timer::Duration);
    m_loadedSection = -1;
    m_loadedVideo.clear();
    m_screen.LoadVideo({});
}

void CReviewSession::Load(std::string_view video) {
    m_screen.LoadVideo(video);
    m_screen.StartTimer(Timer::Duration);
}

void CReviewSession::SelectedDefectChanged() {
    m_defectPending = false;
    m_screen.StopTimer(Timer::Defect);
    const _REC_DATA* record = m_screen.SelectedRecord();
    if (record == nullptr) {
        m_screen.ShowPicture({});
        return;
    }
    if (!EqualNoCase(record->Video, m_screen.Video())) {
        Load(record->Video);
    }
    m_screen.Seek(record->GetPicTime1());
    m_screen.ShowPicture(record->GetPicture1());
}

void CReviewSession::PollDuration() {
    const std::string video = m_screen.Video();
    const double duration = video.empty() ? 0.0 : m_screen.Duration();
    if (duration == 0.0) {
        return;
    }
    m_screen.StopTimer(Timer::Duration);
    m_markers = BuildMarkers(m_screen.Records(), video, duration);
    m_screen.ShowMarkers(m_markers);
}

void CReviewSession::SelectAtSecond(std::int64_t second) {
    if (second < 0 || static_cast<std::uint64_t>(second) >= m_markers.Rows.size()) {
        return;
    }
    const auto row = static_cast<std::int32_t>(m_markers.Rows[static_cast<std::size_t>(second)]);
    const CRecDataArray& records = m_screen.Records();
    // A row equal to the count passes, and selects nothing.
    if (row <= records.GetSize()) {
        (void)m_screen.SelectRecord(row < records.GetSize() ? records[row].ID : -1);
        OnDefectChanged();
    }
}

CReviewSession::Place CReviewSession::GetPlace() const {
    Place place;
    if (m_database == nullptr) {
        return place;
    }
    place.Project = m_path;
    if (const _TESTING_DATA* section = m_screen.SelectedSection()) {
        place.Section = section->ID;
    }
    if (const _REC_DATA* record = m_screen.SelectedRecord()) {
        place.Record = record->ID;
    }
    place.LastSection = HighestId(m_screen.Sections());
    place.LastRecord = HighestId(m_screen.Records());
    place.Changes = m_database->ChangeCount();
    return place;
}

void CReviewSession::Return(const Place& place) {
    const bool changed = m_database != nullptr && place.Project == m_path &&
                         (m_database->ChangeCount() != place.Changes || m_sectionPending || m_defectPending);
    if (const auto wanted = std::exchange(m_wanted, std::nullopt); wanted && m_database != nullptr) {
        if (changed) {
            m_screen.FillSections(*m_database);
        }
        if (m_screen.SelectSection(wanted->first)) {
            if (changed && StandsOnLoaded()) {
                m_screen.FillDefects(*m_database, wanted->first);
                m_screen.StartTimer(Timer::Duration);
            }
            FlushSelections();
            (void)m_screen.SelectRecord(wanted->second);
            OnDefectChanged();
            FlushSelections();
            m_screen.ShowState();
            return;
        }
        if (!changed) {
            return;  // there is no such section, and all else is as it was
        }
    }
    if (m_database == nullptr || place.Project != m_path) {
        return;
    }
    const bool pending = m_sectionPending || m_defectPending;
    if (!pending && m_database->ChangeCount() == place.Changes && m_loadedSection == place.Section) {
        return;
    }
    m_screen.FillSections(*m_database);
    const std::int32_t wanted = MadeOr(m_screen.Sections(), place.LastSection, place.Section);
    (void)m_screen.SelectSection(wanted);
    m_screen.ShowState();
    if (!StandsOnLoaded()) {
        SelectedSectionChanged();
        ForgetPending();
        return;
    }
    m_screen.FillDefects(*m_database, wanted);
    (void)m_screen.SelectRecord(MadeOr(m_screen.Records(), place.LastRecord, place.Record));
    ForgetPending();
    const _REC_DATA* record = m_screen.SelectedRecord();
    m_screen.ShowPicture(record == nullptr ? std::string() : record->GetPicture1());
    m_screen.StartTimer(Timer::Duration);
    PollDuration();
}

// The lists told of selections that this class made itself.
void CReviewSession::ForgetPending() {
    m_sectionPending = false;
    m_defectPending = false;
    m_screen.StopTimer(Timer::Section);
    m_screen.StopTimer(Timer::Defect);
}
