// The program's pictures for buttons and windows.
#pragma once

#include <QIcon>
#include <string_view>

// The picture at a path text such as "ui\big\set.bmp", relative to the current folder. Its twin at twice the
// size, "set@2x.bmp", is taken along if it lies beside it and a screen has use for it. What isn't there or
// is no picture gives an icon that isNull().
QIcon LoadIcon(std::string_view pathText);
