// What the operator sees when he asks for a window that is somewhere already.
#pragma once

class QWidget;

// Restores a window that is minimised or hidden, and raises it, with the topmost of its own windows on top.
void BringToFront(QWidget& window);
