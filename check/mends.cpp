#include "check/mends.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "assessment/explain/explanation.h"
#include "check/numbertext.h"
#include "check/rules.h"
#include "history/restorepoints.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbBase.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/sqltext.h"
#include "store/stepnames.h"

namespace {

std::vector<std::string> SplitVideos(const std::string& list) {
    std::vector<std::string> videos;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find('*', at), list.size());
        videos.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return videos;
}

const _REC_DATA* FindRecord(const SectionRecords& entry, std::int32_t id) {
    const auto found = std::find_if(entry.Records.begin(), entry.Records.end(),
                                    [id](const _REC_DATA& record) { return record.ID == id; });
    return found == entry.Records.end() ? nullptr : &*found;
}

std::string OrderText(const std::vector<std::int32_t>& ids) {
    std::string text;
    for (const std::int32_t id : ids) {
        text += (text.empty() ? "" : ", ") + FormatInt(id);
    }
    return text;
}

void Propose(const SectionRecords& entry, const CheckFinding& finding, std::vector<Mend>& mends) {
    const _TESTING_DATA& section = entry.Section;
    switch (finding.Rule) {
        case RuleNoEnd:
        case RuleNoEndForDensity:
            if (const auto length = PositiveNumber(section.PipeLength)) {
                mends.push_back(
                    {section.ID, -1, "DistanceEnd", "0.00", MetresText(static_cast<float>(*length))});
            }
            break;
        case RuleDateForm:
            if (const std::string date = CanonicalDate(section.TestingDate); date != section.TestingDate) {
                mends.push_back({section.ID, -1, "TestingDate", section.TestingDate, date});
            }
            break;
        case RuleOrder: {
            std::vector<std::int32_t> before;
            for (const _REC_DATA& record : entry.Records) {
                before.push_back(record.ID);
            }
            mends.push_back({section.ID, -1, {}, OrderText(before), OrderText(IdsByDistance(entry.Records))});
            break;
        }
        case RuleStartBehindEnd:
            if (const _REC_DATA* record = FindRecord(entry, finding.Record);
                record != nullptr && record->DistanceEnd == 0.0F) {
                mends.push_back(
                    {section.ID, record->ID, "DistanceEnd", "0.00", MetresText(record->DistanceStart)});
            }
            break;
        default:
            break;
    }
}

template <class Look>
void ForEachPath(const CCheckSnapshot& snapshot, Look look) {
    for (const SectionRecords& entry : snapshot.Sections) {
        for (const std::string& video : SplitVideos(entry.Section.VideoFileList)) {
            look(video);
        }
        for (const _REC_DATA& record : entry.Records) {
            look(record.GetPicture1());
            look(record.GetPicture2());
        }
    }
}

// Paths of records are in lower case.
std::string SqlValue(const Mend& mend) {
    return mend.Record >= 0 ? EscapeSqlPath(mend.After) : EscapeSqlText(mend.After);
}

bool Apply(CDbRec& database, const CCheckSnapshot& snapshot, const Mend& mend) {
    if (mend.Field.empty()) {
        const auto entry =
            std::find_if(snapshot.Sections.begin(), snapshot.Sections.end(),
                         [&](const SectionRecords& section) { return section.Section.ID == mend.Section; });
        return database.SetRecordOrder(mend.Section, IdsByDistance(entry->Records));
    }
    const std::string value = mend.Field == "DistanceEnd" ? mend.After : "'" + SqlValue(mend) + "'";
    database.Execute("update " + std::string(mend.Record >= 0 ? "Record" : "Testing") + " set " + mend.Field +
                     " = " + value +
                     " where ID = " + FormatInt(mend.Record >= 0 ? mend.Record : mend.Section));
    return true;
}

}  // namespace

MendKind MendOf(int rule) {
    switch (rule) {
        case RuleNoEnd:
        case RuleNoEndForDensity:
        case RuleDateForm:
        case RuleOrder:
        case RuleStartBehindEnd:
            return MendKind::AtOnce;
        case RuleVideoMissing:
        case RulePictureMissing:
        case RuleNoDrive:
            return MendKind::Moved;
        default:
            return MendKind::None;
    }
}

std::vector<Mend> ProposeMends(const CCheckSnapshot& snapshot, const std::vector<CheckFinding>& findings) {
    std::unordered_map<std::int32_t, const SectionRecords*> sections;
    for (const SectionRecords& entry : snapshot.Sections) {
        sections.emplace(entry.Section.ID, &entry);
    }
    std::vector<Mend> mends;
    for (const CheckFinding& finding : findings) {
        if (const auto entry = sections.find(finding.Section); entry != sections.end()) {
            Propose(*entry->second, finding, mends);
        }
    }
    return mends;
}

MissingPaths FindMissingPaths(const CCheckSnapshot& snapshot) {
    const CHostFiles::CLookOnce look(HostFiles());
    MissingPaths paths;
    std::set<std::string> known;
    ForEachPath(snapshot, [&](const std::string& path) {
        if (path.empty() || !known.insert(LowerCase(path)).second) {
            return;
        }
        paths.All.push_back(path);
        if (!HostFiles().Exists(path)) {
            paths.Missing.push_back(path);
        }
    });
    return paths;
}

std::vector<Mend> ProposeMoved(const CCheckSnapshot& snapshot, const std::vector<MovedFile>& files) {
    std::unordered_map<std::string, const std::string*> placeOf;
    for (const MovedFile& file : files) {
        placeOf.emplace(LowerCase(file.From), &file.To);
    }
    const auto moved = [&](const std::string& path) {
        const auto place = placeOf.find(LowerCase(path));
        return place == placeOf.end() ? nullptr : place->second;
    };
    std::vector<Mend> mends;
    for (const SectionRecords& entry : snapshot.Sections) {
        std::string videos;
        bool first = true;
        for (const std::string& video : SplitVideos(entry.Section.VideoFileList)) {
            const std::string* place = moved(video);
            videos += (first ? "" : "*") + (place == nullptr ? video : *place);
            first = false;
        }
        if (videos != entry.Section.VideoFileList) {
            mends.push_back({entry.Section.ID, -1, "VideoFileList", entry.Section.VideoFileList, videos});
        }
        for (const _REC_DATA& record : entry.Records) {
            for (const auto& [column, path] : {std::pair("Video", record.Video),
                                               {"Picture1", record.GetPicture1()},
                                               {"Picture2", record.GetPicture2()}}) {
                if (const std::string* place = moved(path)) {
                    mends.push_back({entry.Section.ID, record.ID, column, path, *place});
                }
            }
        }
    }
    return mends;
}

bool ApplyMends(CDbRec& database, const CCheckSnapshot& snapshot, const std::vector<Mend>& mends) {
    if (mends.empty()) {
        return true;
    }
    if (!MakeRestorePoint(database, PointMend)) {
        return false;
    }
    const CDbStep step(database, StepMend);
    try {
        CDbBatch batch(database);
        // IDs change last, since the others are told by them.
        for (const bool order : {false, true}) {
            for (const Mend& mend : mends) {
                if (mend.Field.empty() == order && !Apply(database, snapshot, mend)) {
                    return false;
                }
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError& error) {
        ShowFailure(3842, error);
        return false;
    }
}
