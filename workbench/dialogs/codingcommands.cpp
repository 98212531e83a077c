// The review window's commands of the coding line and of the pipe strip.
#include "controls/CPipeStrip.h"
#include "workbench/dialogs/CCodingDesk.h"
#include "workbench/dialogs/CDlgKeys.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

void CodeCommand(CDlgProAtrrib& window) {
    window.Coding().Open({});
}

void CodeLastCommand(CDlgProAtrrib& window) {
    window.Coding().OpenLast();
}

void RunBeginsCommand(CDlgProAtrrib& window) {
    window.Coding().Open("[");
}

void RunEndsCommand(CDlgProAtrrib& window) {
    window.Coding().Open("]");
}

void StoreCodedCommand(CDlgProAtrrib& window) {
    window.Coding().Store();
}

void FormCodedCommand(CDlgProAtrrib& window) {
    window.Coding().OpenForm();
}

void GiveLengthCommand(CDlgProAtrrib& window) {
    window.Coding().GiveLength();
}

void FavouriteCommand(CDlgProAtrrib& window, int place) {
    window.Coding().OpenFavourite(place);
}

void StripCommand(CDlgProAtrrib& window) {
    CPipeStrip& strip = window.Coding().Strip();
    strip.setVisible(strip.isHidden());
    window.Coding().Follow();
}

void FlagBeforeCommand(CDlgProAtrrib& window) {
    window.Coding().Walk(-1);
}

void NextFlagCommand(CDlgProAtrrib& window) {
    window.Coding().Walk(1);
}

void KeysCommand(CDlgProAtrrib& window) {
    CDlgKeys(&window).DoModal();
}
