#include "check/drives.h"

#include <cctype>
#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/seams.h"

char MissingDrive(std::string_view path) {
    if (path.size() < 2 || path[1] != ':' || std::isalpha(static_cast<unsigned char>(path[0])) == 0) {
        return 0;
    }
    const char letter = static_cast<char>(std::toupper(static_cast<unsigned char>(path[0])));
    std::error_code error;
    return std::filesystem::is_directory(HostFiles().DriveFolder(letter), error) ? '\0' : letter;
}
