// Drive letters of projects from other machines: which folder of this machine each one stands for. A drive
// is a link in the program folder, or a folder there that came into being when it was first written to.
#pragma once

#include <string>
#include <system_error>
#include <vector>

struct Drive {
    char Letter = 'a';   // lower case
    std::string Folder;  // path of this machine
    bool IsLink = false;

    bool operator==(const Drive&) const = default;
};

// By letter.
std::vector<Drive> ListDrives();

// HasFiles: the drive is a folder with files of its own, which a link would hide.
enum class DriveResult { Done, NoFolder, HasFiles, Failed };
// Replaces a former link. `error` tells why it failed.
DriveResult SetDrive(char letter, const std::string& hostFolder, std::error_code& error);
// Takes the link away; what it leads to stays. False if there is no link, or it can't be taken away.
bool RemoveDrive(char letter);
