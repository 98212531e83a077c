#include "bench/fillproject.h"

#include "bench/require.h"
#include "store/CDbRec.h"

void FillProject(const std::string& path, int sections, const std::string& video,
                 const std::function<std::string(int)>& picture) {
    CDbRec database;
    Require(database.OpenDatabase(path, CDbPassword), "open");
    CDbBatch batch(database);
    constexpr const char* codes[] = {"PL", "BX", "CJ", "JG", "SG", "TJ", "CK", "ZW"};
    for (int s = 0; s < sections; ++s) {
        _TESTING_DATA section;
        section.TestingName = "污水管 " + std::to_string(s);
        section.StartWell = "WS" + std::to_string(s);
        section.EndWell = "WS" + std::to_string(s + 1);
        section.VideoFileList = video;
        section.TaskName = "城区排水管网检测";
        section.Location = "示范路";
        section.PipeLength = "50.0";
        section.PipeDiameter = "800";
        section.PipeMaterial = "钢筋混凝土管";
        section.TestingDate = "2026/03/14 09:26:53";
        Require(database.AddTesting(section), "add a section");
        const std::int32_t id = database.LastInsertId();
        for (int r = 0; r < RecordsASection; ++r) {
            _REC_DATA record;
            record.TestingID = id;
            record.DefectCode = codes[(s + r) % 8];
            record.DefectType = database.GetDefectType(record.DefectCode);
            record.DefectLevel = static_cast<std::uint8_t>(1 + r % 4);
            record.DistanceStart = static_cast<float>(r) * 4.3F;
            record.DistanceEnd = record.DistanceStart + 0.5F;
            record.DirectionStart = 3;
            record.DirectionEnd = 9;
            record.Video = section.VideoFileList;
            record.GpsX = 113.26;
            record.GpsY = 23.13;
            record.Comment = "接口处渗水，建议修复";
            const std::string file = picture(s * RecordsASection + r);
            if (!file.empty()) {
                record.AddPicture(file, 12.5);
            }
            Require(database.AddRecord(record), "add a record");
        }
    }
    batch.Commit();
}
