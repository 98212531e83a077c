// The review window's commands on the field folders of a job.
#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "bulk/dialogs/CDlgImport.h"
#include "bulk/jobimport.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CProgressDlg.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int MessageImporting = 3920;
constexpr int MessagePickFolder = 3923;
constexpr int MessageNoDescription = 3919;

void GoTo(CDlgProAtrrib& window, const ImportLine& line) {
    window.Asked = [&] { window.Session().GoTo(line.Section, line.Record); };
    window.Run(CommandAskedLook);
    window.activateWindow();
    if (line.Record >= 0) {
        window.DefectList().setFocus();
    } else {
        window.SectionList().setFocus();
    }
}

// One file behaves as it always did, with its boxes. It needs no window if all of it was taken as it is.
void Import(CDlgProAtrrib& window, const std::vector<std::string>& files) {
    if (files.empty()) {
        return;
    }
    ImportJobResult result;
    if (files.size() == 1) {
        const CWaitCursor wait;
        CProgress silent;
        result = ImportJob(*window.Session().Database(), files, silent, ImportBoxes::Shown);
    } else {
        CProgressDlg progress(&window, MessageText(MessageImporting), CProgressDlg::Unit::Items);
        result = ImportJob(*window.Session().Database(), files, progress);
    }
    const bool plain = files.size() == 1 && (result.Taken + result.Known == 1) && result.Lines.size() == 1;
    if (!result.Begun || plain) {
        return;
    }
    CDlgImport& told = window.ImportWindow();
    if (!told.OnGoTo) {
        told.OnGoTo = [&window](const ImportLine& line) { GoTo(window, line); };
    }
    told.Tell(result);
}

}  // namespace

void ImportXmlCommand(CDlgProAtrrib& window) {
    Import(window, Prompts().PickOpenFiles(LoadMessage(MessageImportXml),
                                           {{"XML File(*.xml)", {"*.xml"}}, {"All Files(*.*)", {"*.*"}}}));
}

void ImportFolderCommand(CDlgProAtrrib& window) {
    if (const std::string folder = Prompts().PickFolder(LoadMessage(MessagePickFolder)); !folder.empty()) {
        ImportPaths(window, {folder});
    }
}

void ImportPaths(CDlgProAtrrib& window, const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        if (!HostFiles().IsFolder(path)) {
            files.push_back(path);
            continue;
        }
        const CWaitCursor wait;
        std::vector<std::string> found = FindDescriptions(path);
        if (found.empty()) {
            ShowMessage(MessageNoDescription, "\r\n" + path);
        }
        std::move(found.begin(), found.end(), std::back_inserter(files));
    }
    Import(window, files);
}
