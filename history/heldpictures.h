// Picture files that steps of the history have deleted or replaced. They wait in a hidden folder beside the
// picture (".drovane-held"), under names that begin with their journal's. Whoever holds one gives its content
// a second name first, changes the project then, and takes the first name away last: at each moment a crash
// leaves the picture in one of both places.
//
// A row of Aux_Picture says for one path where its contents before and after the step are: empty for no
// file, "*" for in place, else the name of a held file. `Move` says what may not be done yet after a crash:
// empty for nothing, else one of the below.
//
// Paths are path texts.
#pragma once

#include <string>
#include <string_view>

inline constexpr const char* HoldingFolderName = ".drovane-held";

inline constexpr const char* PictureAbsent = "";
inline constexpr const char* PictureInPlace = "*";

// The values of `Move`. Others are names of held files, which are to come into place.
inline constexpr const char* MoveRemove = "-";   // the file goes, its content is held
inline constexpr const char* MoveReplace = "?";  // the file is being replaced by who changes the project

std::string HoldingFolder(std::string_view picture);
std::string HeldPath(std::string_view picture, std::string_view heldName);
// A new one.
std::string HeldName(std::string_view journal, std::string_view picture);

// Keeps the content that is in place now. False if it can't; the reason is HostFiles().LastError().
bool HoldPicture(std::string_view picture, std::string_view heldName);
// Brings a held file into place, instead of what is there. Nothing happens if it isn't held any more.
bool PlaceHeld(std::string_view picture, std::string_view heldName);
// Takes the file out of its place if what is held has its content.
bool RemoveIfHeld(std::string_view picture, std::string_view heldName);
// Also its folder, if it was the last.
void DeleteHeld(std::string_view picture, std::string_view heldName);
bool IsHeldName(std::string_view slot);
