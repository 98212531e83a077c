// Tiles of a map in an .mbtiles file: a plain SQLite database, read only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

class CTileFile {
public:
    // A path text. A file that isn't one has no tiles.
    explicit CTileFile(std::string_view path);
    ~CTileFile();
    CTileFile(const CTileFile&) = delete;
    CTileFile& operator=(const CTileFile&) = delete;

    bool IsOpen() const { return m_tile != nullptr; }
    // Rows are counted from the north. Nothing where there is no tile.
    std::optional<std::string> Tile(int zoom, int column, int row) const;
    // Of the deepest tiles; -1 if there are none.
    int DeepestZoom() const;
    std::string Attribution() const;

private:
    std::string Value(const char* statement) const;

    sqlite3* m_connection = nullptr;
    sqlite3_stmt* m_tile = nullptr;
};
