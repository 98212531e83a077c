#include "reports/excel/inspectiontable.h"

#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/recordtexts.h"

namespace {

constexpr int FirstHeading = 2440;
constexpr int SectionColumns = 23;
constexpr std::string_view LinkStart = "=HYPERLINK(\"";
constexpr std::string_view LinkEnd = "\")";

std::string GpsText(double degrees) {
    constexpr int Decimals = 6;
    return FormatFixed(degrees, Decimals);
}

std::string LinkTo(const std::string& path) {
    const std::string host = HostFiles().HostPath(path);
    // A spreadsheet would look for a relative name beside itself.
    return LinkCell(host.empty() || host.starts_with('/') ? host : std::filesystem::absolute(host).string());
}

std::vector<std::string> SectionCells(const _PRO_DATA& project, const _TESTING_DATA& section) {
    return {project.ProjectName,
            project.ProjectIndex,
            project.Location,
            section.TestingDate,
            project.CriterionName,
            section.TestingName,
            LinkTo(section.FirstVideo()),
            GpsText(section.GpsXStart),
            GpsText(section.GpsYStart),
            GpsText(section.GpsXEnd),
            GpsText(section.GpsYEnd),
            section.TaskIndex,
            section.TestingDirection,
            section.TaskName,
            section.Location,
            section.StartWell,
            section.EndWell,
            section.PipeType,
            section.PipeMaterial,
            section.PipeDiameter.empty() ? "0" : section.PipeDiameter,
            section.PipeLength,
            section.TestingCompany,
            section.Tester};
}

std::vector<std::string> RecordCells(const CDbRec& database, const _REC_DATA& record) {
    return {DefectName(database, record.DefectCode),
            record.DefectCode,
            FormatInt(record.DefectLevel),
            GpsText(record.GpsX),
            GpsText(record.GpsY),
            FormatFixed(static_cast<double>(record.DistanceStart), 2),
            FormatInt(record.DirectionStart) + "~" + FormatInt(record.DirectionEnd),
            PictureTimeText(record.GetPicTime1()),
            LinkTo(record.GetPicture1()),
            LinkTo(record.GetPicture2())};
}

void Append(std::vector<std::string>& list, const std::vector<std::string>& cells) {
    list.insert(list.end(), cells.begin(), cells.end());
}

}  // namespace

CellKind InspectionKind(int column) {
    switch (column + 1) {
        case 7:
        case 32:
        case 33:
            return CellKind::Link;
        case 8:
        case 9:
        case 10:
        case 11:
        case 20:
        case 21:
        case 26:
        case 27:
        case 28:
        case 29:
            return CellKind::Number;
        case 13:
        case 30:
        case 31:
            return CellKind::Centred;
        default:
            return CellKind::Text;
    }
}

std::string LinkCell(std::string_view path) {
    return std::string(LinkStart).append(path).append(LinkEnd);
}

std::optional<std::string_view> LinkPath(std::string_view cell) {
    if (cell.size() < LinkStart.size() + LinkEnd.size() || !cell.starts_with(LinkStart) ||
        !cell.ends_with(LinkEnd)) {
        return std::nullopt;
    }
    return cell.substr(LinkStart.size(), cell.size() - LinkStart.size() - LinkEnd.size());
}

int BuildInspectionTable(CDbRec& database, std::vector<std::string>& list) {
    list.clear();
    for (int column = 0; column < InspectionColumns; ++column) {
        list.push_back(LoadMessage(FirstHeading + column));
    }
    _PRO_DATA project;
    CTestingDataArray sections;
    if (!database.ReadAttrib(project) || !database.ReadTestings(sections)) {
        return 0;
    }
    const CHostFiles::CLookOnce look(HostFiles());
    for (const _TESTING_DATA& section : sections) {
        CRecDataArray records;
        if (!database.ReadRecords(section.ID, records, false)) {
            return 0;
        }
        const std::vector<std::string> cells = SectionCells(project, section);
        for (const _REC_DATA& record : records) {
            Append(list, cells);
            Append(list, RecordCells(database, record));
        }
        Append(list, cells);
        list.resize(list.size() + InspectionColumns - SectionColumns);
    }
    return InspectionColumns;
}
