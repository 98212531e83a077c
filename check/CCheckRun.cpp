#include "check/CCheckRun.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "check/rules.h"
#include "store/CDbRec.h"

CCheckRun::CCheckRun(CDbRec& database, CheckOptions options)
    : m_database(database), m_options(std::move(options)) {
    if (!m_options.Memory) {
        m_options.Memory = std::make_shared<CMediaMemory>();
    }
}

CCheckRun::~CCheckRun() = default;

void CCheckRun::Prepare() {
    AddSectionTasks(m_snapshot, m_tasks);
    AddRecordTasks(m_snapshot, m_options.K, m_options.T, m_tasks);
    AddPictureTasks(m_snapshot, m_tasks);
    AddPositionTasks(m_snapshot, m_tasks);
    AddProjectTasks(m_snapshot, m_tasks);
    AddTextTasks(m_snapshot, m_tasks);
    if (m_options.Media != CheckOptions::Files::Ignored) {
        m_media.emplace(m_snapshot, m_options.Media == CheckOptions::Files::Opened, m_options.Memory);
        m_media->AddTasks(m_tasks);
    }
}

void CCheckRun::Finish(std::chrono::milliseconds wait) {
    if (m_media) {
        m_media->Take(wait, m_findings);
    }
    m_state = FilesLeft() == 0 ? State::Done : State::Files;
}

CCheckRun::State CCheckRun::Work(std::chrono::milliseconds slice) {
    const auto end = std::chrono::steady_clock::now() + slice;
    do {
        switch (m_state) {
            case State::Reading:
                switch (m_snapshot.ReadPiece(m_database)) {
                    case CCheckSnapshot::Reading::Going:
                        break;
                    case CCheckSnapshot::Reading::Done:
                        m_state = State::Checking;
                        Prepare();
                        break;
                    case CCheckSnapshot::Reading::Failed:
                        m_state = State::Failed;
                        break;
                }
                break;
            case State::Checking:
                if (m_next < m_tasks.size()) {
                    m_tasks[m_next++](m_findings);
                } else {
                    m_state = State::Files;
                }
                break;
            case State::Files:
                Finish(slice);
                return m_state;
            case State::Done:
            case State::Failed:
                return m_state;
        }
    } while (std::chrono::steady_clock::now() < end);
    return m_state;
}

std::optional<std::vector<CheckFinding>> CheckProject(CDbRec& database, const CheckOptions& options) {
    CCheckRun run(database, options);
    for (;;) {
        switch (run.Work(std::chrono::milliseconds(100))) {
            case CCheckRun::State::Done: {
                std::vector<CheckFinding> findings = run.Findings();
                SortFindings(findings);
                return findings;
            }
            case CCheckRun::State::Failed:
                return std::nullopt;
            default:
                break;
        }
    }
}

void SortFindings(std::vector<CheckFinding>& findings) {
    std::stable_sort(findings.begin(), findings.end(), [](const CheckFinding& a, const CheckFinding& b) {
        return std::tuple(SeverityOf(a.Rule), a.Rule, a.Section, a.Record) <
               std::tuple(SeverityOf(b.Rule), b.Rule, b.Section, b.Record);
    });
}
