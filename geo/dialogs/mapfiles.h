// What the map's page gets from the disk, and nothing else. Paths are those of addresses.
#pragma once

#include <QImage>
#include <set>
#include <string>
#include <string_view>

class CTileFile;

struct MapFile {
    const char* Type = nullptr;  // media type; null if there is no such file
    std::string Bytes;
};

// Of the folder "map" in the program folder.
MapFile ReadPageFile(std::string_view path);
// One of the given path texts, and only if it is a picture by its content.
MapFile ReadPicture(std::string_view path, const std::set<std::string>& allowed);
// "/zoom/column/row". `file` may be null.
MapFile ReadTile(std::string_view path, const CTileFile* file);

// Scheme, host and port of the address of a tile service.
std::string OriginOf(std::string_view address);
// Empty for no picture.
std::string PngOf(const QImage& picture);
