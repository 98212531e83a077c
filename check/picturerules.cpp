// Rules on pictures that need no look into their files; for those see mediarules.cpp.
#include <cmath>
#include <memory>
#include <unordered_map>

#include "check/checktasks.h"
#include "check/rules.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/textcodec.h"

namespace {

struct KnownPictures {
    std::unordered_map<std::string, std::int32_t> RecordOf;     // by lower-cased path
    std::unordered_map<std::string, std::string> FolderOfName;  // lower-cased both
};

// Reports take pictures from one folder, where those of equal names overwrite each other.
void CheckPicture(const _REC_DATA& record, const std::string& path, const char* column, KnownPictures& known,
                  CFindings& findings) {
    const std::string lower = LowerCase(path);
    const auto [owner, isNew] = known.RecordOf.try_emplace(lower, record.ID);
    if (!isNew) {
        if (owner->second != record.ID) {
            findings.Add(RulePictureShared, record, GetFileName(path), column);
        }
        return;
    }
    const std::string name = GetFileName(lower);
    const std::string folder = GetParentFolder(lower);
    const auto other = known.FolderOfName.try_emplace(name, folder).first;
    if (other->second != folder) {
        findings.Add(RulePictureName, record, path, column);
    }
}

void CheckTime(const _REC_DATA& record, double time, const char* column, CFindings& findings) {
    if (!std::isfinite(time) || (time < 0.0 && time != -1.0)) {
        findings.Add(RulePictureTime, record, FormatNumber(time, 2), column);
    }
}

}  // namespace

void AddPictureTasks(const CCheckSnapshot& snapshot, CheckTasks& tasks) {
    const auto known = std::make_shared<KnownPictures>();
    AddForEachSection(snapshot, tasks, [known](const SectionRecords& entry, CFindings& findings) {
        for (const _REC_DATA& record : entry.Records) {
            if (!record.GetPicture1().empty()) {
                CheckPicture(record, record.GetPicture1(), "Picture1", *known, findings);
                CheckTime(record, record.GetPicTime1(), "Picture1", findings);
            }
            if (!record.GetPicture2().empty()) {
                CheckPicture(record, record.GetPicture2(), "Picture2", *known, findings);
                CheckTime(record, record.GetPicTime2(), "Picture2", findings);
            }
        }
    });
}
