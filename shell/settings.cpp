#include "shell/settings.h"

#include <algorithm>
#include <array>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

// Offsets and sizes in bytes, as the files of all installations have them.
constexpr std::size_t BlockSize = 4624;
constexpr std::size_t LanguageOffset = 0;
constexpr std::size_t GpsPortOffset = 260;
constexpr std::size_t GpsBaudOffset = 264;
constexpr std::size_t WorkFolderOffset = 268;
constexpr std::size_t TextSize = 260;

using SettingsBlock = std::array<char, BlockSize>;

std::string GetText(const SettingsBlock& block, std::size_t offset) {
    const char* begin = block.data() + offset;
    return Utf8FromGbk(std::string(begin, std::find(begin, begin + TextSize, '\0')));
}

void SetText(SettingsBlock& block, std::size_t offset, std::string_view text) {
    const std::string gbk = GbkFromUtf8(text);
    const auto begin = block.begin() + static_cast<std::ptrdiff_t>(offset);
    std::fill_n(begin, TextSize, '\0');
    std::copy_n(gbk.begin(), std::min(gbk.size(), TextSize - 1), begin);
}

std::uint32_t GetNumber(const SettingsBlock& block, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = value << 8 | static_cast<unsigned char>(block[offset + i]);
    }
    return value;
}

void SetNumber(SettingsBlock& block, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i, value >>= 8) {
        block[offset + i] = static_cast<char>(value & 0xFF);
    }
}

SettingsBlock DefaultBlock() {
    SettingsBlock block{};
    SetText(block, LanguageOffset, "简体中文");
    SetNumber(block, GpsPortOffset, 1);
    SetText(block, WorkFolderOffset, "D:\\Works\\");
    return block;
}

SettingsBlock& Block() {
    static SettingsBlock block = DefaultBlock();
    return block;
}

std::string SettingsPath() {
    return GetAppFolder() + "set.dat";
}

}  // namespace

bool LoadSettings() {
    const std::optional<std::string> bytes = HostFiles().ReadBeginning(SettingsPath(), BlockSize);
    if (!bytes) {
        Block() = DefaultBlock();
        return false;
    }
    Block() = SettingsBlock{};
    std::copy(bytes->begin(), bytes->end(), Block().begin());
    return true;
}

bool SaveSettings() {
    return HostFiles().WriteFile(SettingsPath(), std::string_view(Block().data(), Block().size()));
}

std::string GetLanguageName() {
    return GetText(Block(), LanguageOffset);
}

void SetLanguageName(std::string_view name) {
    SetText(Block(), LanguageOffset, name);
}

std::string GetWorkFolder() {
    std::string folder = GetText(Block(), WorkFolderOffset);
    if (!folder.empty() && !folder.ends_with('\\')) {
        folder += '\\';
    }
    return folder;
}

void SetWorkFolder(std::string_view folder) {
    SetText(Block(), WorkFolderOffset, folder);
}

std::uint32_t GetGpsPort() {
    return GetNumber(Block(), GpsPortOffset);
}

void SetGpsPort(std::uint32_t port) {
    SetNumber(Block(), GpsPortOffset, port);
}

std::uint32_t GetGpsBaud() {
    return GetNumber(Block(), GpsBaudOffset);
}

void SetGpsBaud(std::uint32_t baud) {
    SetNumber(Block(), GpsBaudOffset, baud);
}
