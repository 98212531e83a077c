#include "geo/mapview/CTileFile.h"

#include <sqlcipher/sqlite3.h>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"

CTileFile::CTileFile(std::string_view path) {
    if (!HostFiles().ReadBeginning(path, 1)) {
        return;  // neither a folder nor a device is opened
    }
    const char* select =
        "select tile_data from tiles where zoom_level = ? and tile_column = ? and tile_row = ?";
    if (sqlite3_open_v2(HostFiles().HostPath(path).c_str(), &m_connection, SQLITE_OPEN_READONLY, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(m_connection, select, -1, &m_tile, nullptr) != SQLITE_OK) {
        m_tile = nullptr;
    }
}

CTileFile::~CTileFile() {
    sqlite3_finalize(m_tile);
    sqlite3_close(m_connection);
}

std::optional<std::string> CTileFile::Tile(int zoom, int column, int row) const {
    constexpr int DeepestRow = 30;
    if (m_tile == nullptr || zoom < 0 || zoom > DeepestRow) {
        return std::nullopt;
    }
    sqlite3_reset(m_tile);
    sqlite3_bind_int(m_tile, 1, zoom);
    sqlite3_bind_int(m_tile, 2, column);
    sqlite3_bind_int(m_tile, 3, (1 << zoom) - 1 - row);  // the file counts from the south
    std::optional<std::string> bytes;
    if (sqlite3_step(m_tile) == SQLITE_ROW) {
        const char* blob = static_cast<const char*>(sqlite3_column_blob(m_tile, 0));
        bytes.emplace(blob == nullptr ? "" : blob, static_cast<std::size_t>(sqlite3_column_bytes(m_tile, 0)));
    }
    sqlite3_reset(m_tile);
    return bytes;
}

int CTileFile::DeepestZoom() const {
    const std::string deepest = Value("select max(zoom_level) from tiles");
    return static_cast<int>(ParseWholeInt(deepest).value_or(-1));
}

std::string CTileFile::Attribution() const {
    return Value("select value from metadata where name = 'attribution'");
}

std::string CTileFile::Value(const char* statement) const {
    std::string value;
    sqlite3_stmt* prepared = nullptr;
    if (m_connection != nullptr &&
        sqlite3_prepare_v2(m_connection, statement, -1, &prepared, nullptr) == SQLITE_OK &&
        sqlite3_step(prepared) == SQLITE_ROW) {
        const unsigned char* text = sqlite3_column_text(prepared, 0);
        value = text == nullptr ? "" : reinterpret_cast<const char*>(text);
    }
    sqlite3_finalize(prepared);
    return value;
}
