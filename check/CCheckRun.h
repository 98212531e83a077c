// A check of a project, in slices: first its rows are read, then the rules run, and files are looked into
// meanwhile on another thread. Findings come as they are found.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "check/CCheckSnapshot.h"
#include "check/CMediaRules.h"
#include "check/checktasks.h"
#include "check/finding.h"

class CDbRec;

struct CheckOptions {
    float K = 0.0F;  // as picked; for whether the order of records matters
    float T = 0.0F;
    enum class Files {
        Ignored,
        Missed,  // only whether they are there
        Opened
    };
    Files Media = Files::Missed;
    std::shared_ptr<CMediaMemory> Memory;  // of earlier checks; null for none
};

class CCheckRun {
public:
    // The database is open and stays so until the reading is done.
    CCheckRun(CDbRec& database, CheckOptions options);
    ~CCheckRun();
    CCheckRun(const CCheckRun&) = delete;
    CCheckRun& operator=(const CCheckRun&) = delete;

    enum class State { Reading, Checking, Files, Done, Failed };
    // Works for about so long. While only files are left it waits at most so long for one.
    State Work(std::chrono::milliseconds slice);
    State Now() const { return m_state; }
    // Files that are still to be looked into.
    std::size_t FilesLeft() const { return m_media ? m_media->Pending() : 0; }
    const CCheckSnapshot& Snapshot() const { return m_snapshot; }
    // All so far.
    const std::vector<CheckFinding>& Findings() const { return m_findings.Found; }

private:
    void Prepare();
    void Finish(std::chrono::milliseconds wait);

    CDbRec& m_database;
    CheckOptions m_options;
    State m_state = State::Reading;
    CCheckSnapshot m_snapshot;
    CheckTasks m_tasks;
    std::size_t m_next = 0;
    CFindings m_findings;
    std::optional<CMediaRules> m_media;
};

// The whole at one go.
std::optional<std::vector<CheckFinding>> CheckProject(CDbRec& database, const CheckOptions& options);
// Most grave first, then in the order of the rules, sections and records.
void SortFindings(std::vector<CheckFinding>& findings);
