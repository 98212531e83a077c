#include "history/heldpictures.h"

#include "history/fileidentity.h"
#include "shell/CHostFiles.h"
#include "shell/paths.h"
#include "shell/seams.h"

std::string HoldingFolder(std::string_view picture) {
    return GetParentFolder(picture) + HoldingFolderName + "\\";
}

std::string HeldPath(std::string_view picture, std::string_view heldName) {
    return HoldingFolder(picture).append(heldName);
}

std::string HeldName(std::string_view journal, std::string_view picture) {
    return std::string(journal) + "-" + RandomName() + "." + GetFileExtension(picture);
}

bool HoldPicture(std::string_view picture, std::string_view heldName) {
    return HostFiles().MakeFolder(HoldingFolder(picture)) &&
           HostFiles().LinkFile(picture, HeldPath(picture, heldName));
}

bool PlaceHeld(std::string_view picture, std::string_view heldName) {
    const std::string held = HeldPath(picture, heldName);
    // A rename between two names of one file does nothing, and leaves both.
    if (HostFiles().Exists(picture) && HostFiles().HaveSameContent(picture, held)) {
        return HostFiles().DeleteFile(held);
    }
    return !HostFiles().Exists(held) || HostFiles().MoveFile(held, picture, CHostFiles::Existing::Replace);
}

bool RemoveIfHeld(std::string_view picture, std::string_view heldName) {
    return !HostFiles().Exists(picture) ||
           !HostFiles().HaveSameContent(picture, HeldPath(picture, heldName)) ||
           HostFiles().DeleteFile(picture);
}

void DeleteHeld(std::string_view picture, std::string_view heldName) {
    (void)HostFiles().DeleteFile(HeldPath(picture, heldName));
    (void)HostFiles().RemoveEmptyFolder(HoldingFolder(picture));
}

bool IsHeldName(std::string_view slot) {
    return slot != PictureAbsent && slot != PictureInPlace;
}
