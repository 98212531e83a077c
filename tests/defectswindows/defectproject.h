// A project with one section of 30 m and a standard that has manholes in the middle and a hole in its grades.
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

#include "store/CDbRec.h"
#include "store/criterionmaker.h"
#include "tests/support/CTestFolder.h"

class DefectProject : public testing::Test {
protected:
    DefectProject() {
        WriteCriterionFile(
            {"S",
             {{"PL", "破裂", "JG", {{1, "裂痕", 0.5}, {2, "裂口", 2.0}, {4, "坍塌", 10.0}}},
              {"JCJ_ZC", "检查井正常", "JCJ", {{1, "正常", 0.0}}},
              {"BX", "变形", "JG", {{1, "不大于5%", 1.0}, {2, "5%到15%", 2.0}}},
              {"CJ", "沉积", "GN", {{1, "20%到30%", 0.5}, {2, "30%到40%", 2.0}, {3, "40%到50%", 5.0}}},
              {"JCJ_JNYZW", "井内有杂物", "JCJ", {{1, "杂物", 0.0}}}}},
            Folder.Host("db/p.mdb").string());
        EXPECT_TRUE(Database.OpenDatabase(Folder.Path("db/p.mdb"), CDbPassword));
        Section.DistanceEnd = 30.0F;
        Section.GpsXStart = 121.5;
        Section.GpsYStart = 31.25;
        Section.VideoFileList = Folder.WriteFile("job/v.avi", "no video");
        EXPECT_TRUE(Database.AddTesting(Section));
        Section.ID = 1;
    }

    std::string WritePicture(const char* name, QColor colour = Qt::gray) const {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "JPG");
        return Folder.WriteFile(name, bytes.toStdString());
    }
    CRecDataArray Stored() {
        CRecDataArray records;
        EXPECT_TRUE(Database.ReadRecords(-1, records, false));
        return records;
    }
    bool Exists(const char* name) const { return std::filesystem::exists(Folder.Host(name)); }

    CTestFolder Folder;
    CDbRec Database;
    _TESTING_DATA Section;
};
