// What the operator sees when he asks for a window that is somewhere already.
#pragma once

class QWidget;

// Restores a window that is minimised or hidden, and raises it, with the topmost of its own windows on top.
void BringToFront(QWidget& window);

// Whether a modal window keeps the operator from this one now.
bool IsBlocked(const QWidget& window);
