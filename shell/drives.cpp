#include "shell/drives.h"

#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/seams.h"

namespace fs = std::filesystem;

std::vector<Drive> ListDrives() {
    std::vector<Drive> drives;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const fs::path folder = HostFiles().DriveFolder(letter);
        std::error_code error;
        const fs::path target = fs::read_symlink(folder, error);
        if (!error) {
            drives.push_back({letter, target.string(), true});
        } else if (fs::is_directory(folder, error)) {
            drives.push_back({letter, folder.string(), false});
        }
    }
    return drives;
}

DriveResult SetDrive(char letter, const std::string& hostFolder, std::error_code& error) {
    if (!fs::is_directory(hostFolder, error)) {
        return DriveResult::NoFolder;
    }
    const fs::path link = HostFiles().DriveFolder(letter);
    if (fs::is_directory(fs::symlink_status(link, error))) {
        fs::remove(link, error);  // does it only if it is empty
        if (error) {
            return DriveResult::HasFiles;
        }
    }
    fs::create_directories(link.parent_path(), error);
    const fs::path fresh = link.string() + ".new";
    fs::remove(fresh, error);
    fs::create_directory_symlink(hostFolder, fresh, error);
    if (!error) {
        fs::rename(fresh, link, error);
    }
    HostFiles().ForgetFolders();
    return error ? DriveResult::Failed : DriveResult::Done;
}

bool RemoveDrive(char letter) {
    const fs::path link = HostFiles().DriveFolder(letter);
    std::error_code error;
    const bool removed = fs::is_symlink(fs::symlink_status(link, error)) && fs::remove(link, error);
    HostFiles().ForgetFolders();
    return removed;
}
