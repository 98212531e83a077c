#include "reports/excel/workbookcheck.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace {

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

// Name of the root element of a document that begins so.
std::string RootName(std::string_view beginning) {
    for (std::size_t at = beginning.find('<'); at != std::string_view::npos;
         at = beginning.find('<', at + 1)) {
        const std::size_t end = beginning.find_first_of(" \t\r\n/>", at + 1);
        if (end != std::string_view::npos && beginning.substr(at + 1, 1) != "?") {
            return std::string(beginning.substr(at + 1, end - at - 1));
        }
    }
    return {};
}

// The archive's own check sum is looked at with the last byte.
bool IsWholeEntry(zip_t* archive, zip_uint64_t index) {
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(archive, index, 0));
    if (!entry) {
        return false;
    }
    constexpr std::size_t Kept = 512;  // longer than what an XML document begins and ends with
    std::string beginning;
    std::string end;
    std::array<char, 65536> buffer;
    zip_int64_t got = 0;
    while ((got = zip_fread(entry.get(), buffer.data(), buffer.size())) > 0) {
        const std::string_view piece(buffer.data(), static_cast<std::size_t>(got));
        if (beginning.size() < Kept) {
            beginning += piece.substr(0, Kept);
        }
        end += piece.substr(piece.size() - std::min(piece.size(), Kept));
        end.erase(0, end.size() - std::min(end.size(), Kept));
    }
    end.erase(end.find_last_not_of("\r\n") + 1);
    const std::string root = RootName(beginning);
    return got == 0 && !root.empty() &&
           (end.ends_with("</" + root + ">") ||
            (end.ends_with("/>") && end.rfind('<') == end.rfind("<" + root)));
}

}  // namespace

bool IsWholeWorkbook(const std::string& bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    const std::unique_ptr<zip_t, CloseArchive> archive(
        source != nullptr ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr);
    if (!archive) {
        if (source != nullptr) {
            zip_source_free(source);
        }
        zip_error_fini(&error);
        return false;
    }
    zip_error_fini(&error);
    const zip_int64_t entries = zip_get_num_entries(archive.get(), 0);
    for (zip_int64_t i = 0; i < entries; ++i) {
        if (!IsWholeEntry(archive.get(), static_cast<zip_uint64_t>(i))) {
            return false;
        }
    }
    return entries > 0;
}
