#include "store/jet/reader/jetheader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <string_view>

#include "store/jet/jetfile.h"
#include "store/jet/reader/CDamage.h"
#include "store/jet/reader/jetvalues.h"

namespace {

constexpr std::size_t VersionAt = 0x14;
constexpr unsigned char VersionJet4 = 1;
constexpr std::size_t MaskedAt = 0x18;
constexpr std::size_t MaskedSize = 0x80;
constexpr std::size_t PasswordAt = 0x42;
constexpr std::size_t PasswordSize = 40;
constexpr std::size_t CreatedAt = 0x72;  // a double: days

// The catalogue of tables is the third page.
constexpr std::uint64_t FewestPages = 3;

using Page = std::array<unsigned char, JetPageSize>;

// RC4 with the fixed key of the format.
void Unmask(unsigned char* bytes, std::size_t size) {
    constexpr std::array<unsigned char, 4> key{0xC7, 0xDA, 0x39, 0x6B};
    std::array<unsigned char, 256> state{};
    std::iota(state.begin(), state.end(), static_cast<unsigned char>(0));
    std::size_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = (j + state[i] + key[i % key.size()]) % state.size();
        std::swap(state[i], state[j]);
    }
    j = 0;
    for (std::size_t at = 0; at < size; ++at) {
        const std::size_t i = (at + 1) % state.size();
        j = (j + state[i]) % state.size();
        std::swap(state[i], state[j]);
        bytes[at] ^= state[(state[i] + state[j]) % state.size()];
    }
}

// The password is masked once more, with the creation date.
std::string Password(const Page& page) {
    double created = 0;
    std::memcpy(&created, &page[CreatedAt], sizeof created);
    const bool fits = std::fabs(created) < std::numeric_limits<std::int32_t>::max();
    const std::int32_t days = fits ? static_cast<std::int32_t>(created) : 0;
    std::array<char, 4> mask{};
    std::memcpy(mask.data(), &days, mask.size());
    std::string clear(PasswordSize, '\0');
    for (std::size_t i = 0; i < clear.size(); ++i) {
        clear[i] = static_cast<char>(static_cast<char>(page[PasswordAt + i]) ^ mask[i % mask.size()]);
    }
    std::string text = Utf8FromUtf16(clear);
    text.resize(std::strlen(text.c_str()));
    return text;
}

}  // namespace

JetHeader ReadJetHeader(int descriptor) {
    struct stat state {};
    Page page{};
    Require(fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode), "no file");
    const auto size = static_cast<std::uint64_t>(state.st_size);
    Require(size % JetPageSize == 0 && size / JetPageSize >= FewestPages, "cut");
    Require(pread(descriptor, page.data(), page.size(), 0) == static_cast<ssize_t>(page.size()),
            "unreadable");
    Require(
        BeginsAsJet({reinterpret_cast<const char*>(page.data()), page.size()}) && page[VersionAt - 1] == 0,
        "no such database");
    Require(page[VersionAt] == VersionJet4, "another version of the format");
    Unmask(&page[MaskedAt], MaskedSize);
    return {Password(page), size / JetPageSize};
}
