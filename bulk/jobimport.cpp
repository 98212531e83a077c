#include "bulk/jobimport.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>

#include "fieldimport/acquisition.h"
#include "fieldimport/acquisitionimport.h"
#include "history/restorepoints.h"
#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/CSilentPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/sonar.h"
#include "store/stepnames.h"

namespace {

namespace fs = std::filesystem;

constexpr int FirstKind = 3890;
constexpr int MessageFileMissing = 3895;
constexpr int MessageTaken = 3921;
constexpr int MessageKnown = 2189;
constexpr std::string_view SecondPicture = "picfilename2";
constexpr std::size_t Sniffed = 4096;  // bytes that tell what a file is

// Hears what an import shows in boxes, and passes it on if somebody is to see it.
class CHearingPrompts : public CSilentPrompts {
public:
    explicit CHearingPrompts(CPrompts* shown) : m_shown(shown) {}

    void ShowMessage(int number, const std::string& text) override {
        Number = number;
        Text = text;
        if (m_shown != nullptr) {
            m_shown->ShowMessage(number, text);
        }
    }

    int Number = 0;
    std::string Text;

private:
    CPrompts* m_shown;
};

bool IsDescription(const std::string& path) {
    const auto bytes = HostFiles().ReadBeginning(path, Sniffed);
    return bytes &&
           (bytes->find("<mdata") != std::string::npos || bytes->find("dixmlfilename") != std::string::npos);
}

class CJob {
public:
    CJob(CDbRec& database, CPrompts* shown) : m_database(database), m_shown(shown) {}

    void Take(const std::string& file) {
        m_file = file;
        CHearingPrompts heard(m_shown);
        std::string why;
        std::vector<std::string> left;
        ImportNotes notes;
        bool taken = false;
        {
            const CSeamScope scope({.Prompts = &heard});
            taken = ImportAcquisition(
                m_database, file, [&](const std::string& line) { left.push_back(line); }, &notes);
        }
        if (!taken) {
            const bool known = heard.Number == MessageKnown;
            m_section = known ? notes.Section : -1;
            ++(known ? Result.Known : Result.Refused);
            Add(known ? ImportLine::Kind::Known : ImportLine::Kind::Refused, !heard.Text.empty() ? heard.Text
                                                                             : left.empty() ? std::string()
                                                                                            : left.back());
            m_section = -1;
            return;
        }
        ++(notes.Refused.empty() ? Result.Taken : Result.Refused);
        m_section = notes.Section;
        CRecDataArray records;
        (void)m_database.LookAtRecords(m_section, records, false);
        Add(ImportLine::Kind::Taken,
            FillText(LoadMessage(MessageTaken), {notes.Label, FormatInt(records.GetSize())}));
        for (const std::string& line : notes.Refused) {
            Add(ImportLine::Kind::Refused, line);
        }
        for (std::size_t i = 0; i < notes.Converted.size(); ++i) {
            Add(ImportLine::Kind::Changed, notes.Converted[i], notes.ConvertedRecords[i]);
        }
        std::set<std::string> told;
        for (const std::string& line : left) {
            // A second picture is what most defects don't have.
            if (!line.ends_with(SecondPicture) && told.insert(line).second) {
                const auto times = std::count(left.begin(), left.end(), line);
                Add(ImportLine::Kind::Missing, times == 1 ? line : line + " (" + FormatInt(times) + ")");
            }
        }
        TellMissingFiles(records);
        m_section = -1;
    }

    ImportJobResult Result;

private:
    void Add(ImportLine::Kind kind, std::string text, std::int32_t record = -1) {
        Result.Lines.push_back({kind, m_file, m_section, record, std::move(text)});
    }

    void TellMissing(const std::string& path, std::int32_t record) {
        if (!path.empty() && !HostFiles().Exists(path)) {
            Add(ImportLine::Kind::Missing, FillText(LoadMessage(MessageFileMissing), {path}), record);
        }
    }

    void TellMissingFiles(const CRecDataArray& records) {
        const CHostFiles::CLookOnce look(HostFiles());
        std::set<std::string> told;
        for (const _REC_DATA& record : records) {
            if (told.insert(LowerCase(record.Video)).second) {
                TellMissing(record.Video, -1);
            }
            TellMissing(record.GetPicture1(), record.ID);
            TellMissing(record.GetPicture2(), record.ID);
        }
    }

    CDbRec& m_database;
    CPrompts* m_shown;  // null: no boxes
    std::string m_file;
    std::int32_t m_section = -1;
};

}  // namespace

std::vector<std::string> FindDescriptions(std::string_view folder) {
    std::set<std::string> files;
    std::error_code error;
    const std::string root = HostFiles().HostPath(folder);
    const std::string begin = folder.ends_with('\\') ? std::string(folder) : std::string(folder) + '\\';
    fs::recursive_directory_iterator at(root, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
        std::error_code failure;
        if (at->is_directory(failure)) {
            if (at->path().filename().native().starts_with('.')) {
                at.disable_recursion_pending();
            }
            continue;
        }
        const auto relative = CHostFiles::PathText(at->path().lexically_relative(root).native());
        if (relative && EqualNoCase(GetFileExtension(*relative), "xml") && at->is_regular_file(failure) &&
            IsDescription(begin + *relative)) {
            files.insert(begin + *relative);
        }
    }
    std::vector<std::string> found(files.begin(), files.end());
    std::set<std::string> named;  // by a sonar's description, in lower case
    for (const std::string& file : found) {
        const auto bytes = HostFiles().ReadBeginning(file, Sniffed);
        if (bytes && bytes->find("dixmlfilename") != std::string::npos) {
            SonarData data;
            ReadSonarXml(file, data);
            named.insert(LowerCase(GetParentFolder(file) + data.dixmlfilename));
        }
    }
    std::erase_if(found, [&](const std::string& file) { return named.contains(LowerCase(file)); });
    return found;
}

ImportJobResult ImportJob(CDbRec& database, const std::vector<std::string>& files, CProgress& progress,
                          ImportBoxes boxes) {
    CJob job(database, boxes == ImportBoxes::Shown ? &Prompts() : nullptr);
    if (files.size() > 1 && !MakeRestorePoint(database, PointImport)) {
        job.Result.Begun = false;
        return std::move(job.Result);
    }
    const CDbStep step(database, StepImportField);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (progress.Stopped()) {
            job.Result.Stopped = true;
            break;
        }
        progress.At(static_cast<std::int64_t>(i), static_cast<std::int64_t>(files.size()),
                    GetFileName(files[i]));
        job.Take(files[i]);
    }
    return std::move(job.Result);
}

std::string ImportKindText(ImportLine::Kind kind) {
    return LoadMessage(FirstKind + static_cast<int>(kind));
}

std::string ImportLinesText(const std::vector<ImportLine>& lines) {
    std::string text;
    for (const ImportLine& line : lines) {
        text += line.File + '\t' + ImportKindText(line.What) + '\t' + line.Text + '\n';
    }
    return text;
}
