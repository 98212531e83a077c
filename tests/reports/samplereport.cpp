#include "tests/reports/samplereport.h"

#include "tests/reports/documents.h"
#include "tests/support/CTestFolder.h"

namespace {

using Texts = std::vector<std::string>;

std::string Text(int number) {
    return std::to_string(number);
}

// The number of rows, and "name-row.column" for each of them.
Texts Rows(const std::string& name, int rows, int columns) {
    Texts texts{Text(rows)};
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            texts.push_back(name + "-" + Text(r + 1) + "." + Text(c + 1));
        }
    }
    return texts;
}

void Append(Texts& texts, const Texts& added) {
    texts.insert(texts.end(), added.begin(), added.end());
}

// One form has one defect row with a picture, the next two with two pictures each, and so on.
void AppendSectionForms(Texts& strings, const std::string& picture) {
    strings.push_back(Text(SampleSections));
    for (int section = SampleSections; section > 0; --section) {
        const std::string name = "管段" + Text(section);
        strings.push_back(Text(section));
        for (int i = 1; i <= 17; ++i) {
            strings.push_back(name + "的" + Text(i));
        }
        for (int d = 1; d <= section; ++d) {
            for (int column = 1; column <= 5; ++column) {
                strings.push_back(name + "缺陷" + Text(d) + "." + Text(column));
            }
            Append(strings, {picture, d > 1 ? picture : "", "0309"});
        }
    }
}

}  // namespace

SampleReport MakeSampleReport(const CTestFolder& folder, bool full, int assessed) {
    const std::string picture = folder.WriteFile("job/p.jpg", MakeBitmap(300, 240, 0x607080));
    SampleReport sample;
    sample.Full = full;
    sample.MapPicture = folder.WriteFile("job/map.png", MakeBitmap(1024, 640, 0xC8D8B0));
    ReportLists& lists = sample.Lists;
    lists.SectionRows = Rows("评估", SampleSections, assessed);
    lists.WellTotalRows = Rows("井数", 13, 9);
    lists.WellDefectRows = Rows("井", 3, 6);
    lists.ShortRows = Rows("等级", SampleSections, 6);
    lists.LevelCountRows = Rows("比例", 10, 1);
    lists.LevelCountRows.erase(lists.LevelCountRows.begin());
    lists.LevelLengthRows = Rows("长度", 25, 1);
    lists.LevelLengthRows.erase(lists.LevelLengthRows.begin());
    lists.WellPictureRows = {
        "1.0", "井盖破损", "0",      "0", "说明甲",           picture, picture, "0000", "2.0", "井壁渗水",
        "0",   "0",        "说明乙", "",  "\\none\\lost.jpg", "0000"};

    Texts& strings = lists.ProjectStrings;
    strings = {"东山路 <A&B> 排水管道检测", "SN-1", "东山区", "2026-03-01", "管道检测公司", "王工"};
    Append(strings, Rows("检测管段", SampleSections, 4));
    strings.push_back("987.6");
    for (int code = 1; code <= 17; ++code) {  // one more than the template has ready
        lists.Codes.push_back("C" + Text(code));
        lists.Names.push_back("缺陷类型" + Text(code));
        lists.DefectCountsByType.push_back(code % 3 == 0 ? 0U : static_cast<std::uint32_t>(code));
        Texts row = Rows(lists.Names.back(), 1, 5);
        row.erase(row.begin());
        Append(strings, row);
    }
    lists.DefectCountsByLevel = {7, 0, 2, 1};
    Append(strings, Rows("一览", 40, 9));
    if (full) {
        AppendSectionForms(strings, picture);
        return sample;
    }
    // Seven forms; the other two records are manholes.
    strings.push_back("9");
    for (int i = 7; i > 0; --i) {
        for (int column = 1; column <= 6; ++column) {
            strings.push_back("详表" + Text(i) + "." + Text(column));
        }
        strings.push_back(i == 2 ? "\\none\\lost.jpg" : picture);
    }
    return sample;
}
