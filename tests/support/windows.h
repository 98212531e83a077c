// Drives windows as an operator does: by what is on the screen.
#pragma once

#include <QString>
#include <Qt>
#include <functional>

class CSizeDlg;
class QWidget;

// Handles events until `condition` holds; false if it doesn't within the time.
bool WaitFor(const std::function<bool()>& condition, int milliseconds = 5000);
// Handles events for that long.
void WaitFor(int milliseconds);

// Runs `script` as soon as a further modal window has come up. A window that the script leaves open fails the
// test and is cancelled; one that never comes is a failure too, unless the test ends first.
void InNextDialog(std::function<void(CSizeDlg&)> script);
// Whether all scripts have run.
bool AllDialogsCame();

// Fail the test if there is no such control, or if it can't be used.
void Press(CSizeDlg& dialog, int id);
void Type(CSizeDlg& dialog, int id, const QString& text);  // replaces the text
void PressKey(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
QString TextOf(const CSizeDlg& dialog, int id);
bool IsEnabled(const CSizeDlg& dialog, int id);

// Whether every control in the window has the room that its text needs.
void ExpectNothingCut(const CSizeDlg& dialog);

// For whoever wants to look: writes the window as PNG into the folder named by DROVANE_SCREENSHOTS, if set.
void Photograph(QWidget& window, const QString& name);
