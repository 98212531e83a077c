// A review of one project: what is open, which section and defect it stands on, which video is loaded, and
// where the defects lie in it. It drives the lists and the player of a screen, and knows no window.
//
// Time and distance are independent values of a defect: time comes from the player, distance is typed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/CReviewScreen.h"
#include "workbench/review.h"

class CRecExport;

// What a command needs before it begins.
enum class ReviewNeed {
    Nothing,
    Project,          // else message 2185
    Section,          // 2191
    SectionSilently,  // without a word
    Defect            // 2196
};

class CReviewSession {
public:
    explicit CReviewSession(CReviewScreen& screen);
    ~CReviewSession();
    CReviewSession(const CReviewSession&) = delete;
    CReviewSession& operator=(const CReviewSession&) = delete;

    // False, with everything as it was, if the project can't be opened; the message has been shown.
    bool Open(std::string_view path);
    CRecExport* Database() const { return m_database.get(); }  // null without a project
    const std::string& ProjectPath() const { return m_path; }
    const std::string& ProjectName() const { return m_name; }
    const std::string& CriterionName() const { return m_criterion; }
    // As they stand in the project now.
    void ReadNames();
    void SetNames(std::string_view project, std::string_view criterion);
    bool IsReadOnly() const;
    const Markers& DefectMarkers() const { return m_markers; }

    // Whether a command may begin; tells what is missing.
    bool Meets(ReviewNeed need) const;
    // If the file of the project has gone meanwhile, tells so once and offers to save what is open as a copy,
    // which the session goes on with.
    void OfferCopyIfGone();

    // Reads the sections anew. The selection is lost; whoever wants it kept selects the row again at once.
    void RefreshLists();
    // Of the section that is selected now.
    void RefillDefects();
    void FillDefects(std::int32_t sectionId);
    void UnloadVideo();

    // The lists tell what happens to them, and the window which timer fired.
    void OnSectionChanged();
    void OnDefectChanged();
    void OnTimer(CReviewScreen::Timer timer);
    // Does at once what the timers would do. A command first of all: when the thread stalls, keys overtake
    // timers, and it would take the video of one section for another's.
    void FlushSelections();
    // Selects the defect of this second of the video; `second` comes from the ruler.
    void SelectAtSecond(std::int64_t second);

    // Where the operator stands. A command begins with GetPlace and ends with Return.
    struct Place {
        std::string Project;
        std::int32_t Section = -1;
        std::int32_t Record = -1;
        std::int32_t LastSection = 0;  // the highest IDs of both lists: what is above them is new
        std::int32_t LastRecord = 0;
        std::int64_t Changes = 0;
    };
    Place GetPlace() const;
    // For a command that leads elsewhere: its end selects this section and this record instead, with its
    // frame.
    void GoTo(std::int32_t section, std::int32_t record) { m_wanted = {{section, record}}; }
    // If the command changed anything: reads the lists anew, and stands where the operator stood, or on what
    // the command has made, without touching the video unless the section is another one.
    void Return(const Place& place);

private:
    // Whether the section selected is the one whose video was loaded last, and still has that.
    bool StandsOnLoaded() const;
    void SelectedSectionChanged();
    void SelectedDefectChanged();
    void PollDuration();
    void Load(std::string_view video);
    void ForgetPending();

    CReviewScreen& m_screen;
    std::unique_ptr<CRecExport> m_database;
    std::string m_path;
    std::string m_name;
    std::string m_criterion;
    Markers m_markers;
    std::int32_t m_loadedSection = -1;  // whose video was loaded last
    std::string m_loadedVideo;          // and which that was
    std::optional<std::pair<std::int32_t, std::int32_t>> m_wanted;
    bool m_sectionPending = false;
    bool m_defectPending = false;
    bool m_toldGone = false;
};
