// The commands of the review window: each is a row of one table, and a function that carries it out.
//
// Whoever adds a command adds its row and its function. The window's dispatcher sees to what is around it:
// pending selections, what the command needs, its question, and the place of the operator afterwards.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "workbench/CReviewSession.h"

class CDlgProAtrrib;
struct FormDraft;

struct ReviewCommand {
    int Id;
    ReviewNeed Needs;
    int Question;                            // message that is asked first; 0: none
    bool Loses;                              // Cancel is what Enter answers then
    bool Changes;                            // the project: it can't be run where that is read-only
    void (*Handler)(CDlgProAtrrib& window);  // null while the command isn't built

    // How it looks; without a bitmap it has no button.
    const char* Caption;   // where there is no language table
    int Text;              // message of its text; the tip's, if it has a button, is TipOffset more
    const char* Bitmap;    // path text
    int Size;              // pixels of the bitmap at 100 %
    const char* Shortcut;  // portable key text; null for none
};

inline constexpr int TipOffset = 30;

// In the order of the messages, which both language files share.
std::span<const ReviewCommand> ReviewCommands();
const ReviewCommand& CommandOf(int id);

// The tool bar from left to right, and the buttons beside the lists from top to bottom.
inline constexpr int ToolbarLine = -1;
inline constexpr int ToolbarStretch = -2;
std::span<const int> ToolbarOrder();
std::span<const int> SectionButtons();
std::span<const int> DefectButtons();
// Switch parts of the window on and off; between the lists.
std::span<const int> ViewButtons();

inline constexpr int CommandProjectProperties = 1024;
inline constexpr int CommandDeleteSection = 1023;
inline constexpr int CommandSectionProperties = 1028;
inline constexpr int CommandEditDefect = 1029;
inline constexpr int CommandDeleteDefect = 1030;
inline constexpr int CommandUndo = 5040;
inline constexpr int CommandRedo = 5041;
inline constexpr int CommandHistory = 5042;
inline constexpr int CommandResume = 5054;
inline constexpr int CommandExplain = 5060;
inline constexpr int CommandCheck = 5070;
inline constexpr int CommandAskedLook = 5083;
inline constexpr int CommandAskedChange = 5084;
inline constexpr int CommandImportFolder = 5086;
inline constexpr int CommandFind = 5087;
inline constexpr int CommandAllDefects = 5088;
inline constexpr int CommandPictures = 5089;
inline constexpr int CommandBulkEdit = 5090;
inline constexpr int CommandCode = 5160;
inline constexpr int CommandCodeLast = 5161;
inline constexpr int CommandRunBegins = 5162;
inline constexpr int CommandRunEnds = 5163;
inline constexpr int CommandStoreCoded = 5164;
inline constexpr int CommandFormCoded = 5165;
inline constexpr int CommandStrip = 5166;
inline constexpr int CommandFlagBefore = 5167;
inline constexpr int CommandNextFlag = 5168;
inline constexpr int CommandKeys = 5169;
inline constexpr int CommandFavourite = 5170;  // and the nine behind it
inline constexpr int CommandGiveLength = 5180;
inline constexpr int CommandSortByWells = 32782;
inline constexpr int CommandRenumber = 0x8D2;  // rows were dragged

// Of the project.
void OpenProjectCommand(CDlgProAtrrib& window);
void ProjectPropertiesCommand(CDlgProAtrrib& window);
void ImportXmlCommand(CDlgProAtrrib& window);
void ImportFolderCommand(CDlgProAtrrib& window);
void ImportGpsCommand(CDlgProAtrrib& window);
void ExportExcelCommand(CDlgProAtrrib& window);
void ExportShapeCommand(CDlgProAtrrib& window);
void MapCommand(CDlgProAtrrib& window);
void ExportWordCommand(CDlgProAtrrib& window);
void SettingsCommand(CDlgProAtrrib& window);
void AboutCommand(CDlgProAtrrib& window);
void CloseCommand(CDlgProAtrrib& window);
// Files, and folders for all descriptions below them.
void ImportPaths(CDlgProAtrrib& window, const std::vector<std::string>& paths);
// Of sections.
void NewSectionsCommand(CDlgProAtrrib& window);
void DeleteSectionCommand(CDlgProAtrrib& window);
void SectionPropertiesCommand(CDlgProAtrrib& window);
void CalculateGpsCommand(CDlgProAtrrib& window);
void SortByWellsCommand(CDlgProAtrrib& window);
void RenumberCommand(CDlgProAtrrib& window);
// Of defects.
void NewDefectCommand(CDlgProAtrrib& window);
void NewManholeDefectCommand(CDlgProAtrrib& window);
void DeleteDefectCommand(CDlgProAtrrib& window);
void EditDefectCommand(CDlgProAtrrib& window);
void SecondPictureCommand(CDlgProAtrrib& window);

// Of the history.
void UndoCommand(CDlgProAtrrib& window);
void RedoCommand(CDlgProAtrrib& window);
void HistoryCommand(CDlgProAtrrib& window);

// Of many rows: those that the filter leaves over, or all.
void BulkEditCommand(CDlgProAtrrib& window);
// Of what is seen.
void FindCommand(CDlgProAtrrib& window);
void AllDefectsCommand(CDlgProAtrrib& window);
void PicturesCommand(CDlgProAtrrib& window);

// Of the coding line and the strip of the pipe.
void CodeCommand(CDlgProAtrrib& window);
void CodeLastCommand(CDlgProAtrrib& window);
void RunBeginsCommand(CDlgProAtrrib& window);
void RunEndsCommand(CDlgProAtrrib& window);
void StoreCodedCommand(CDlgProAtrrib& window);
void FormCodedCommand(CDlgProAtrrib& window);
void GiveLengthCommand(CDlgProAtrrib& window);
void FavouriteCommand(CDlgProAtrrib& window, int place);  // from 0
void StripCommand(CDlgProAtrrib& window);
void FlagBeforeCommand(CDlgProAtrrib& window);
void NextFlagCommand(CDlgProAtrrib& window);
void KeysCommand(CDlgProAtrrib& window);

// Of the assessment.
void ExplainCommand(CDlgProAtrrib& window);

void CheckCommand(CDlgProAtrrib& window);
// What a window beside this one asks for (CDlgProAtrrib::Asked).
void AskedCommand(CDlgProAtrrib& window);

// What was typed before a crash: the draft that the window offered (CDlgProAtrrib::Resuming).
void ResumeCommand(CDlgProAtrrib& window);
inline constexpr const char* SectionDraft = "section";
void ResumeSection(CDlgProAtrrib& window, const FormDraft& draft);

// The window's own texts.
inline constexpr int MessageNoProject = 3050;
inline constexpr int MessageNoSections = 3051;
inline constexpr int MessageChooseSection = 3052;
inline constexpr int MessageNoDefects = 3053;
inline constexpr int MessageNoProjectVideo = 3054;
inline constexpr int MessageChooseVideo = 3055;
inline constexpr int MessageNotBuilt = 3056;
inline constexpr int MessageImportXml = 3057;
inline constexpr int MessageImportGps = 3327;
inline constexpr int MessageCopying = 3058;
inline constexpr int MessageSortByWells = 3059;
inline constexpr int MessageNoVideo = 3082;
inline constexpr int MessageSectionList = 3080;
inline constexpr int MessageDefectList = 3081;
inline constexpr int MessageReadOnlyTitle = 3333;
inline constexpr int MessageReadOnlyTip = 3334;
inline constexpr int MessageDraftFound = 3474;
inline constexpr int MessageGradeTip = 3565;
inline constexpr int MessageNoScoring = 3566;
inline constexpr int MessageShowLevels = 3567;
inline constexpr int MessageChoosePipe = 3906;
inline constexpr int MessageGoToPlace = 3905;
inline constexpr int MessageNothingToUndo = 3385;
inline constexpr int MessageNothingToRedo = 3386;
