// The settings block of the process and its file `set.dat` in the program folder: 4624 bytes,
// integers little-endian, texts in the ANSI code page.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// False, with the defaults in force, if the file can't be read; nothing is written then.
bool LoadSettings();
// False if the file can't be written; the former file stays then.
bool SaveSettings();

// The setters change the block only; saving is the caller's job. Texts are cut at 259 bytes.
std::string GetLanguageName();
void SetLanguageName(std::string_view name);
// With a trailing "\" unless it is empty.
std::string GetWorkFolder();
void SetWorkFolder(std::string_view folder);
std::uint32_t GetGpsPort();
void SetGpsPort(std::uint32_t port);
std::uint32_t GetGpsBaud();
void SetGpsBaud(std::uint32_t baud);
