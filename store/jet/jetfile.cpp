#include "store/jet/jetfile.h"

#include <fcntl.h>

#include <array>

#include "shell/CUnixFile.h"

namespace {

// The 4 bytes before the name are part of it.
constexpr std::string_view Beginning("\x00\x01\x00\x00Standard Jet DB", 19);

}  // namespace

bool BeginsAsJet(std::string_view bytes) {
    return bytes.starts_with(Beginning);
}

bool IsJetFile(const std::string& hostPath) {
    // Without blocking: a pipe in the file's place would stop the program for good.
    const CUnixFile file(hostPath, O_RDONLY | O_NONBLOCK);
    struct stat state {};
    std::array<char, Beginning.size()> bytes{};
    return file.IsOpen() && file.State(state) && S_ISREG(state.st_mode) &&
           file.ReadAll(bytes.data(), bytes.size()) && BeginsAsJet({bytes.data(), bytes.size()});
}
