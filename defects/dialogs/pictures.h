// From the bytes of a picture file to an image, and back.
#pragma once

#include <QImage>
#include <string>
#include <string_view>

// By content and never by ending, turned upright, without transparency, and no longer on a side than any
// screen needs, since only a scaled copy of it is ever shown. Null if it isn't a picture, or one of a size
// that no camera takes.
QImage DecodePicture(const std::string& bytes);

// In the format that the path's extension stands for, at the library's usual quality. Empty if there is no
// such format.
std::string EncodePicture(const QImage& image, std::string_view path);
