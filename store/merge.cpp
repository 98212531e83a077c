#include "store/merge.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CLateProgress.h"
#include "shell/CPrompts.h"
#include "shell/CSilentPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/temporaryfolder.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/COldFiles.h"
#include "store/catalogue.h"

namespace {

constexpr int MessageMerging = 3422;
constexpr int MessageLogNotShown = 3420;
constexpr int MessageWithoutSection = 3421;

std::string LogBlock(const std::string& reason, const std::string& project, const _TESTING_DATA& section) {
    return "合并测段失败," + reason + ":\r\n工程名: " + project + " 测段名: " + section.TaskName +
           " 起止井号: " + section.Label() + "\r\n视频文件名: " + section.FirstVideo() + "\r\n\r\n";
}

bool SaveCopy(const std::string& source, const std::string& target) {
    CSilentPrompts silent;
    const CSeamScope scope({.Prompts = &silent});
    CDbRec database;
    try {
        if (database.OpenDatabase(source, CDbPassword, CDbBase::Access::Shared)) {
            database.SaveCopy(target, CTemporaryTwin::Existing::Keep);
            return true;
        }
    } catch (const CDbError&) {
    }
    return false;
}

// The path of the new project; empty with its message shown.
std::string CopyProject(const std::string& source) {
    constexpr int Attempts = 5;  // another program may take the name meanwhile
    std::string path;
    for (int i = 0; i < Attempts; ++i) {
        path = FreeProjectPath();
        if (OldFiles().IsOld(source)) {
            return OldFiles().ConvertTo(source, path, CDbPassword) ? path : std::string();
        }
        if (SaveCopy(source, path)) {
            return path;
        }
        if (!HostFiles().Exists(path)) {
            break;
        }
    }
    ShowMessage(2203, path);
    return {};
}

struct ProjectContent {
    CTestingDataArray Sections;
    CRecDataArray Records;
};

bool ReadContent(const std::string& path, ProjectContent& content) {
    CDbRec database;
    return database.OpenDatabase(path, CDbPassword, CDbBase::Access::Shared) &&
           database.ReadTestings(content.Sections) && database.ReadRecords(-1, content.Records, false);
}

// A file of the older engine stays as it is: what is read is a conversion of it.
bool ReadProject(const std::string& path, ProjectContent& content) {
    if (!OldFiles().IsOld(path)) {
        return ReadContent(path, content);
    }
    const std::string converted = GetTemporaryFolder() + GetFileName(FreeProjectPath());
    (void)HostFiles().DeleteFile(converted);
    const bool read = OldFiles().ConvertTo(path, converted, CDbPassword) && ReadContent(converted, content);
    (void)HostFiles().DeleteFile(converted);
    return read;
}

class CMerger {
public:
    CMerger(CDbRec& database, const _PRO_DATA& second, MergeResult& result)
        : m_database(database),
          m_batch(database),
          m_path(second.ProjectPath),
          m_name(second.ProjectName),
          m_result(result) {}

    // False with its message shown; what came in until then stays.
    bool Run() {
        try {
            if (!Rename() || !ReadProject(m_path, m_second) || !AddSections() ||
                !m_database.ReadTestings(m_sections)) {
                return false;
            }
            AddRecords();
            if (m_batch.IsLost()) {
                return false;
            }
            m_batch.Commit();
            return true;
        } catch (const CLateProgress::CStopped&) {
            m_batch.Discard();
            throw;
        }
    }

private:
    bool Rename() {
        _PRO_DATA attributes;
        if (!m_database.ReadAttrib(attributes)) {
            return false;
        }
        attributes.ProjectName += "__" + m_name;
        return m_database.WriteAttrib(attributes, false);
    }

    bool AddSections() {
        for (int i = 0; i < m_second.Sections.GetSize(); ++i) {
            Step();
            const _TESTING_DATA& section = m_second.Sections[i];
            if (m_database.FindTestingByWells(section.StartWell, section.EndWell)) {
                m_result.Log += LogBlock(LoadMessage(2189), m_name, section);
            } else if (!m_database.AddTesting(section)) {
                m_result.Log += LogBlock("数据库写入错误", m_name, section);
                m_failed.push_back(i);
            }
            if (m_batch.IsLost()) {
                return false;  // each further section would only repeat the message
            }
        }
        return true;
    }

    void AddRecords() {
        for (int i = m_second.Sections.GetUpperBound(); i >= 0; --i) {
            m_placeOf[m_second.Sections[i].ID] = i;
        }
        for (int i = m_sections.GetUpperBound(); i >= 0; --i) {
            m_byLabel[m_sections[i].Label()] = m_sections[i].ID;
        }
        for (const _REC_DATA& source : m_second.Records) {
            Step();
            _REC_DATA record = source;
            record.TestingID = OwnerOf(source.TestingID);
            if (!m_database.AddRecord(record)) {
                m_result.RefusedRecords.push_back(PlaceOf(source));
            } else if (record.TestingID < 0) {
                ++m_result.WithoutSection;
            }
            if (m_batch.IsLost()) {
                return;
            }
        }
    }

    // Of the new project, for a section of the second. A place that the new project's list doesn't reach has
    // no owner there, as in all files that were ever merged.
    std::int32_t OwnerOf(std::int32_t sectionId) const {
        const auto place = m_placeOf.find(sectionId);
        if (place == m_placeOf.end() || place->second >= m_sections.GetSize()) {
            return -1;
        }
        const auto owner = m_byLabel.find(m_second.Sections[place->second].Label());
        if (owner != m_byLabel.end()) {
            return owner->second;
        }
        const bool failed = std::binary_search(m_failed.begin(), m_failed.end(), place->second);
        // The walk over the list runs past its end; the array says so, and the merge ends there.
        return failed ? m_sections[m_sections.GetSize()].ID : -1;
    }

    std::string PlaceOf(const _REC_DATA& record) const {
        const auto place = m_placeOf.find(record.TestingID);
        return (place == m_placeOf.end() ? std::string() : m_second.Sections[place->second].Label() + ", ") +
               record.DefectCode;
    }

    void Step() { m_progress.At(m_done++, m_second.Sections.GetSize() + m_second.Records.GetSize()); }

    CDbRec& m_database;
    CDbBatch m_batch;
    const std::string& m_path;  // of the second project
    const std::string& m_name;
    ProjectContent m_second;
    MergeResult& m_result;
    CTestingDataArray m_sections;  // of the new project
    std::vector<int> m_failed;     // places of the sections that the database refused
    std::unordered_map<std::int32_t, int> m_placeOf;
    std::unordered_map<std::string, std::int32_t> m_byLabel;
    CLateProgress m_progress{LoadMessage(MessageMerging)};
    std::int64_t m_done = 0;
};

}  // namespace

bool MergeProjects(const _PRO_DATA& first, const _PRO_DATA& second, MergeResult& result) {
    result = {};
    if (first.CriterionName != second.CriterionName) {
        ShowMessage(1062);
        return false;
    }
    result.Path = CopyProject(first.ProjectPath);
    if (result.Path.empty()) {
        return false;
    }
    const CHostFiles::CLookOnce look(HostFiles());
    try {
        CDbRec database;
        return database.OpenDatabase(result.Path, CDbPassword, CDbBase::Access::Making) &&
               CMerger(database, second, result).Run();
    } catch (const CDbError& error) {
        ShowFailure(2013, error);
        return false;
    } catch (const CLateProgress::CStopped&) {
        (void)HostFiles().DeleteFile(result.Path);
        result = {};
        return false;
    }
}

std::string WriteMergeLog(const MergeResult& result) {
    const std::string path = GetAppFolder() + "merge.txt";
    const bool written = !result.Log.empty() && HostFiles().WriteFile(path, GbkFromUtf8(result.Log));
    return written ? path : std::string();
}

void ShowMergeResult(const MergeResult& result) {
    const std::string log = WriteMergeLog(result);
    if (!result.Log.empty() && (log.empty() || !Desktop().OpenFile(log))) {
        constexpr std::size_t MostBytes = 2000;
        const std::string text = GbkPrefix(result.Log, MostBytes);
        ShowMessage(MessageLogNotShown, "\r\n" + HostFiles().HostPath(log) + "\r\n\r\n" + text +
                                            (text.size() < result.Log.size() ? "…" : ""));
    }
    if (result.WithoutSection > 0) {
        Prompts().ShowMessage(MessageWithoutSection, FillText(LoadMessage(MessageWithoutSection),
                                                              {FormatInt(result.WithoutSection)}));
    }
}
