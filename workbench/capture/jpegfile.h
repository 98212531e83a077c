// Writes pixels as JPEG files.
#pragma once

#include <string_view>

// `data` has three bytes a pixel, red first; rows follow each other without a gap or, with `aligned`, each
// at the next multiple of 4 bytes, the lowest first with `flip`. Without `colour` the picture is grey.
// False if there is nothing to write or it can't be written; the file is then as it was before.
bool RGBToJpegFile(std::string_view path, const unsigned char* data, int width, int height, bool colour,
                   int quality, bool flip, bool aligned);
