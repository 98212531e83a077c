#include "workbench/dialogs/reviewcommandtable.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr int Big = 32;
constexpr int Small = 20;

// In the order of the messages, which both language files share.
constexpr std::array<ReviewButton, 20> Buttons = {{
    {1038, "打开工程", 950, "ui\\big\\open.bmp", Big, "Ctrl+O"},
    {1024, "工程属性", 951, "ui\\big\\attrib.bmp", Big, "Ctrl+P"},
    {1082, "导入XML", 952, "ui\\big\\xml.bmp", Big, "Ctrl+I"},
    {1027, "导入GPS", 953, "ui\\big\\gps.bmp", Big, "Ctrl+G"},
    {1025, "导出Excel", 954, "ui\\big\\excel.bmp", Big, "Ctrl+E"},
    {1026, "导出Word", 955, "ui\\big\\word.bmp", Big, "Ctrl+R"},
    {1018, "地图", 956, "ui\\big\\map.bmp", Big, "Ctrl+M"},
    {1019, "Shp文件", 957, "ui\\big\\shp.bmp", Big, "Ctrl+H"},
    {1081, "设置", 958, "ui\\big\\set.bmp", Big, "Ctrl+,"},
    {1080, "关于", 959, "ui\\big\\about.bmp", Big, "F1"},
    {2, "退出", 960, "ui\\big\\exit.bmp", Big, "Ctrl+Q"},
    {1021, "新建", 961, "ui\\small\\new.bmp", Small, "Ctrl+N"},
    {1023, "删除", 962, "ui\\small\\del.bmp", Small, "Ctrl+Shift+D"},
    {1028, "属性", 963, "ui\\small\\attrib.bmp", Small, "F3"},
    {1079, "Gps", 964, "ui\\small\\calc.bmp", Small, "F4"},
    {1035, "添加", 965, "ui\\small\\new.bmp", Small, "F5"},
    {1037, "检查井", 966, "ui\\small\\new.bmp", Small, "F7"},
    {1030, "删除", 967, "ui\\small\\del.bmp", Small, "Ctrl+D"},
    {1029, "属性", 968, "ui\\small\\attrib.bmp", Small, "F2"},
    {1033, "图片", 969, "ui\\small\\snap.bmp", Small, "F6"},
}};

}  // namespace

const ReviewButton& ButtonOf(int id) {
    const auto found = std::find_if(Buttons.begin(), Buttons.end(),
                                    [id](const ReviewButton& button) { return button.Id == id; });
    if (found == Buttons.end()) {
        throw std::invalid_argument("no such command");
    }
    return *found;
}
