#include "workbench/dialogs/reviewcommands.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

using enum ReviewNeed;

constexpr int Big = 32;
constexpr int Small = 20;

template <int Place>
constexpr ReviewCommand Favourite(const char* keys) {
    return {CommandFavourite + Place,
            Section,
            0,
            false,
            true,
            [](CDlgProAtrrib& window) { FavouriteCommand(window, Place); },
            nullptr,
            3143,
            nullptr,
            0,
            keys};
}

constexpr std::array<ReviewCommand, 56> Table = {{
    // Id, needs, question, loses, changes, handler, looks
    {1038, Nothing, 0, false, false, OpenProjectCommand, "打开工程", 950, "ui\\big\\open.bmp", Big, "Ctrl+O"},
    {CommandProjectProperties, Project, 0, false, false, ProjectPropertiesCommand, "工程属性", 951,
     "ui\\big\\attrib.bmp", Big, "Ctrl+P"},
    {1082, Project, 0, false, true, ImportXmlCommand, "导入XML", 952, "ui\\big\\xml.bmp", Big, "Ctrl+I"},
    {CommandImportFolder, Project, 0, false, true, ImportFolderCommand, "导入目录", 3922,
     "ui\\big\\folder.bmp", Big, "Ctrl+Shift+I"},
    {1027, Project, 0, false, true, ImportGpsCommand, "导入GPS", 953, "ui\\big\\gps.bmp", Big, "Ctrl+G"},
    {1025, Project, 2188, false, false, ExportExcelCommand, "导出Excel", 954, "ui\\big\\excel.bmp", Big,
     "Ctrl+E"},
    {1026, Nothing, 0, false, false, ExportWordCommand, "导出Word", 955, "ui\\big\\word.bmp", Big, "Ctrl+R"},
    {1018, Project, 0, false, false, MapCommand, "地图", 956, "ui\\big\\map.bmp", Big, "Ctrl+M"},
    {1019, Project, 0, false, false, ExportShapeCommand, "Shp文件", 957, "ui\\big\\shp.bmp", Big, "Ctrl+H"},
    {1081, Nothing, 0, false, false, SettingsCommand, "设置", 958, "ui\\big\\set.bmp", Big, "Ctrl+,"},
    {1080, Nothing, 0, false, false, AboutCommand, "关于", 959, "ui\\big\\about.bmp", Big, "F1"},
    {2, Nothing, 2182, true, false, CloseCommand, "退出", 960, "ui\\big\\exit.bmp", Big, "Ctrl+Q"},
    {1021, Project, 0, false, true, NewSectionsCommand, "新建", 961, "ui\\small\\new.bmp", Small, "Ctrl+N"},
    {CommandDeleteSection, Section, 2192, true, true, DeleteSectionCommand, "删除", 962, "ui\\small\\del.bmp",
     Small, "Ctrl+Shift+D"},
    {CommandSectionProperties, Section, 0, false, false, SectionPropertiesCommand, "属性", 963,
     "ui\\small\\attrib.bmp", Small, "F3"},
    {1079, Section, 2193, false, true, CalculateGpsCommand, "Gps", 964, "ui\\small\\calc.bmp", Small, "F4"},
    {1035, Section, 0, false, true, NewDefectCommand, "添加", 965, "ui\\small\\new.bmp", Small, "F5"},
    {1037, SectionSilently, 0, false, true, NewManholeDefectCommand, "检查井", 966, "ui\\small\\new.bmp",
     Small, "F7"},
    {CommandDeleteDefect, Defect, 2197, true, true, DeleteDefectCommand, "删除", 967, "ui\\small\\del.bmp",
     Small, "Ctrl+D"},
    {CommandEditDefect, Defect, 0, false, false, EditDefectCommand, "属性", 968, "ui\\small\\attrib.bmp",
     Small, "F2"},
    {1033, Defect, 0, false, true, SecondPictureCommand, "图片", 969, "ui\\small\\snap.bmp", Small, "F6"},
    {CommandUndo, Project, 0, false, true, UndoCommand, "撤销", 3451, "ui\\big\\undo.bmp", Big, "Ctrl+Z"},
    {CommandRedo, Project, 0, false, true, RedoCommand, "重做", 3452, "ui\\big\\redo.bmp", Big, "Ctrl+Y"},
    {CommandHistory, Project, 0, false, false, HistoryCommand, "历史", 3453, "ui\\big\\history.bmp", Big,
     "Ctrl+J"},
    {CommandCheck, Project, 0, false, false, CheckCommand, "检查", 3880, "ui\\big\\check.bmp", Big, "Ctrl+K"},
    {CommandFind, Project, 0, false, false, FindCommand, "查找", 3942, "ui\\small\\find.bmp", Small,
     "Ctrl+F"},
    {CommandAllDefects, Project, 0, false, false, AllDefectsCommand, "全部缺陷", 3949, "ui\\small\\all.bmp",
     Small, "Ctrl+L"},
    {CommandPictures, Nothing, 0, false, false, PicturesCommand, "图片", 3950, "ui\\small\\pictures.bmp",
     Small, "F8"},
    {CommandBulkEdit, Project, 0, false, true, BulkEditCommand, "批量修改", 3951, "ui\\small\\many.bmp",
     Small, "Ctrl+B"},
    {CommandStrip, Nothing, 0, false, false, StripCommand, "管道条", 3125, "ui\\small\\strip.bmp", Small,
     "F9"},
    {CommandCode, Section, 0, false, true, CodeCommand, nullptr, 3139, nullptr, 0, "/"},
    {CommandCodeLast, Section, 0, false, true, CodeLastCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandRunBegins, Section, 0, false, true, RunBeginsCommand, nullptr, 3141, nullptr, 0, "["},
    {CommandRunEnds, Section, 0, false, true, RunEndsCommand, nullptr, 3142, nullptr, 0, "]"},
    {CommandStoreCoded, Section, 0, false, true, StoreCodedCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandFormCoded, Section, 0, false, true, FormCodedCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandGiveLength, Section, 0, false, true, GiveLengthCommand, nullptr, 0, nullptr, 0, nullptr},
    Favourite<0>("Alt+1"),
    Favourite<1>("Alt+2"),
    Favourite<2>("Alt+3"),
    Favourite<3>("Alt+4"),
    Favourite<4>("Alt+5"),
    Favourite<5>("Alt+6"),
    Favourite<6>("Alt+7"),
    Favourite<7>("Alt+8"),
    Favourite<8>("Alt+9"),
    Favourite<9>("Alt+0"),
    {CommandFlagBefore, SectionSilently, 0, false, false, FlagBeforeCommand, nullptr, 3144, nullptr, 0,
     "Ctrl+Left"},
    {CommandNextFlag, SectionSilently, 0, false, false, NextFlagCommand, nullptr, 3145, nullptr, 0,
     "Ctrl+Right"},
    {CommandKeys, Nothing, 0, false, false, KeysCommand, nullptr, 3149, nullptr, 0, "Ctrl+F1"},
    {CommandAskedLook, Project, 0, false, false, AskedCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandAskedChange, Project, 0, false, true, AskedCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandExplain, Section, 0, false, false, ExplainCommand, nullptr, 3148, nullptr, 0, "Ctrl+T"},
    {CommandSortByWells, Nothing, 0, false, true, SortByWellsCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandResume, Project, 0, false, true, ResumeCommand, nullptr, 0, nullptr, 0, nullptr},
    {CommandRenumber, Nothing, 0, false, true, RenumberCommand, nullptr, 0, nullptr, 0, nullptr},
}};

constexpr std::array Toolbar = {1038,
                                CommandProjectProperties,
                                ToolbarLine,
                                CommandUndo,
                                CommandRedo,
                                CommandHistory,
                                ToolbarLine,
                                1082,
                                CommandImportFolder,
                                1027,
                                ToolbarLine,
                                CommandCheck,
                                1026,
                                1025,
                                1019,
                                1018,
                                ToolbarLine,
                                1081,
                                ToolbarStretch,
                                1080,
                                2};
constexpr std::array OfSections = {1021, CommandDeleteSection, CommandSectionProperties, 1079};
constexpr std::array OfView = {CommandFind, CommandAllDefects, CommandPictures, CommandStrip,
                               CommandBulkEdit};
constexpr std::array OfDefects = {1035, 1037, CommandDeleteDefect, CommandEditDefect, 1033};

}  // namespace

std::span<const ReviewCommand> ReviewCommands() {
    return Table;
}

const ReviewCommand& CommandOf(int id) {
    const auto found = std::find_if(Table.begin(), Table.end(),
                                    [id](const ReviewCommand& command) { return command.Id == id; });
    if (found == Table.end()) {
        throw std::invalid_argument("no such command");
    }
    return *found;
}

std::span<const int> ToolbarOrder() {
    return Toolbar;
}

std::span<const int> SectionButtons() {
    return OfSections;
}

std::span<const int> ViewButtons() {
    return OfView;
}

std::span<const int> DefectButtons() {
    return OfDefects;
}
