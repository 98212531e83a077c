#include "fieldimport/acquisitionimport.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "fieldimport/acquisition.h"
#include "fieldimport/sonarimport.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CSilentPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/recordpictures.h"
#include "store/sonar.h"
#include "store/stepnames.h"

namespace {

constexpr int MessageSonarNotKept = 3083;

// What osd1 to osd18 say of a section. The field units don't follow the order of the columns.
constexpr std::array<std::string _TESTING_DATA::*, 18> OsdFields = {
    &_TESTING_DATA::TaskIndex,      &_TESTING_DATA::TestingDirection, &_TESTING_DATA::TaskName,
    &_TESTING_DATA::Location,       &_TESTING_DATA::StartWell,        &_TESTING_DATA::EndWell,
    &_TESTING_DATA::PipeType,       &_TESTING_DATA::PipeMaterial,     &_TESTING_DATA::PipeDiameter,
    &_TESTING_DATA::TestingCompany, &_TESTING_DATA::Tester,           &_TESTING_DATA::DepthStart,
    &_TESTING_DATA::DepthEnd,       &_TESTING_DATA::ManholeDepth,     &_TESTING_DATA::PipeLength,
    &_TESTING_DATA::LayingTime,     &_TESTING_DATA::EngineeringUnits, &_TESTING_DATA::DetectionLength,
};

_TESTING_DATA MakeSection(const AcquisitionHeader& header) {
    _TESTING_DATA section;
    section.ID = 0;
    section.TestingName = header.Name;
    section.TestingDate = header.GenTime;
    section.VideoFileList = header.VideoFileName;
    for (std::size_t i = 0; i < OsdFields.size(); ++i) {
        section.*OsdFields[i] = header.Osd[i];
    }
    return section;
}

std::uint8_t ParseByte(const std::string& text) {
    return static_cast<std::uint8_t>(ParseInt(text));
}

// Field units write pictures in subfolders with either separator. Only one of them ends the folder when the
// copy in the report image folder is named.
void AddItemPicture(_REC_DATA& record, std::string path, const std::string& time) {
    std::replace(path.begin(), path.end(), '/', '\\');
    AddPicture(record, path, RoundTo(ParseDouble(time), 3));
}

_REC_DATA MakeRecord(const CDbRec& database, const _TESTING_DATA& section, const AcquisitionItem& item) {
    const double start = ParseDouble(item.Dist);
    const double length = ParseDouble(item.Len);
    _REC_DATA record;
    record.TestingID = section.ID;
    record.DefectCode = item.Code;
    record.DefectType = database.GetDefectType(item.Code);  // without it no "GDZC" is ever refused
    record.Comment = item.Desc;
    record.DefectLevel = ParseByte(item.Level);
    record.DistanceStart = static_cast<float>(RoundTo(start, 3));
    record.DistanceEnd = static_cast<float>(RoundTo(start + length, 3));
    record.DirectionStart = ParseByte(item.ClockStart);
    record.DirectionEnd = ParseByte(item.ClockEnd);
    record.Video = section.VideoFileList;
    AddItemPicture(record, item.PicFileName, item.PicTime);
    AddItemPicture(record, item.PicFileName2, item.PicTime2);
    record.GpsX = RoundTo(ParseDouble(item.Longitude), 12);
    record.GpsY = RoundTo(ParseDouble(item.Latitude), 12);
    return record;
}

// Keeps what is shown, beside showing it.
class CHeardPrompts : public CSilentPrompts {
public:
    explicit CHeardPrompts(CPrompts& shown) : m_shown(shown) {}
    void ShowMessage(int number, const std::string& text) override {
        Last = text;
        m_shown.ShowMessage(number, text);
    }
    bool AskOkCancel(int number, const std::string& text) override {
        return m_shown.AskOkCancel(number, text);
    }

    std::string Last;

private:
    CPrompts& m_shown;
};

std::string PlaceOf(std::string_view path, std::size_t number, const AcquisitionItem& item) {
    return GetFileName(path) + ", item " + FormatInt(static_cast<std::int64_t>(number)) + " (" + item.Code +
           ")";
}

// What a value was taken as, where that isn't what stands there.
void NoteConversions(const std::string& place, const AcquisitionItem& item, std::vector<std::string>& lines) {
    const auto note = [&](const char* name, const std::string& text, const std::string& taken) {
        lines.push_back(place + ": " + name + " \"" + text + "\" taken as " + taken);
    };
    for (const auto& [name, text] : {std::pair("level", item.Level), std::pair("time", item.ClockStart),
                                     std::pair("time", item.ClockEnd)}) {
        const std::optional<double> number = ParseWholeDouble(text);
        if (const std::uint8_t taken = ParseByte(text); !number || *number != taken) {
            note(name, text, FormatInt(taken));
        }
    }
    for (const auto& [name, text] :
         {std::pair("dist", item.Dist), std::pair("len", item.Len), std::pair("Longitude", item.Longitude),
          std::pair("Latitude", item.Latitude), std::pair("picfilename time", item.PicTime),
          std::pair("picfilename2 time", item.PicTime2)}) {
        if (!text.empty() && !ParseWholeDouble(text)) {
            note(name, text, FormatNumber(ParseDouble(text), 12));
        }
    }
}

bool Refuse(int message) {
    ShowMessage(message);
    return false;
}

// `stored` is the one with the same manholes, if it exists.
bool HasSection(CDbRec& database, const _TESTING_DATA& section, bool& exists, _TESTING_DATA& stored) {
    try {
        exists = database.FindTestingByWells(section.StartWell, section.EndWell, &stored);
        return true;
    } catch (const CDbError&) {
        return Refuse(2013);
    }
}

// `id` becomes that of the new section.
bool StoreAcquisition(CDbRec& database, const _TESTING_DATA& section, std::string_view path,
                      const std::vector<AcquisitionItem>& items, ImportNotes& notes, std::int32_t& id) {
    try {
        CDbBatch batch(database);
        if (!database.AddTesting(section)) {
            return false;
        }
        _TESTING_DATA stored;
        if (!database.FindTestingByWells(section.StartWell, section.EndWell, &stored)) {
            return Refuse(2007);
        }
        id = stored.ID;
        CHeardPrompts heard(Prompts());
        const CSeamScope scope({.Prompts = &heard});
        for (std::size_t i = 0; i < items.size(); ++i) {
            const std::string place = PlaceOf(path, i + 1, items[i]);
            if (database.AddRecord(MakeRecord(database, stored, items[i]))) {
                const std::int32_t record = database.LastInsertId();
                NoteConversions(place, items[i], notes.Converted);
                notes.ConvertedRecords.resize(notes.Converted.size(), record);
            } else if (batch.IsLost()) {
                return false;  // the message came from AddRecord; each further item would only repeat it
            } else {
                notes.Refused.push_back(place + ": " + heard.Last);
            }
        }
        batch.Commit();
        return true;
    } catch (const CDbError&) {
        return Refuse(2007);
    }
}

// It names the acquisition description beside it, near its beginning.
bool IsSonarDescription(std::string_view path) {
    const std::optional<std::string> bytes = HostFiles().ReadFile(path, MaxAcquisitionBytes);
    if (!bytes) {
        return false;
    }
    std::size_t end = 0;
    for (int line = 0; line < 5 && end < bytes->size(); ++line) {
        end = std::min(bytes->find('\n', end), bytes->size() - 1) + 1;
    }
    return std::string_view(*bytes).substr(0, end).find("dixmlfilename") != std::string_view::npos;
}

}  // namespace

bool ImportAcquisition(CDbRec& database, std::string_view path, const CLineSink& sink, ImportNotes* notes) {
    const CDbStep step(database, StepImportField);
    if (!database.IsOpen()) {
        return Refuse(2185);
    }
    std::string folder = GetParentFolder(path);
    if (folder.ends_with('\\')) {
        folder.pop_back();
    }
    std::string description(path);
    const bool sonar = IsSonarDescription(path);
    if (sonar) {
        SonarData data;
        ReadSonarXml(path, data);
        if (!data.dixmlfilename.empty()) {
            description = folder + "\\" + data.dixmlfilename;
        }
    }
    AcquisitionHeader header;
    std::vector<AcquisitionItem> items;
    if (!ReadAcquisitionXml(folder, description, header, items, sink)) {
        return false;
    }
    if (sonar) {
        items.clear();  // the operator takes the pictures of a sonar run by hand
    }
    const _TESTING_DATA section = MakeSection(header);
    bool exists = false;
    _TESTING_DATA known;
    if (!HasSection(database, section, exists, known)) {
        return false;
    }
    ImportNotes unwanted;
    ImportNotes& told = notes == nullptr ? unwanted : *notes;
    told.Label = section.Label();
    if (exists) {
        told.Section = known.ID;
        return Refuse(2189);
    }
    std::int32_t id = 0;
    if (!StoreAcquisition(database, section, description, items, told, id)) {
        return false;
    }
    told.Section = id;
    if (sonar) {
        StoreSonarFiles(database.Path(), path, id);
        if (!HoldsSonarFiles(database.Path(), path, id)) {
            told.Refused.push_back(std::string(path) + ": " + LoadMessage(MessageSonarNotKept));
        }
    }
    return true;
}
