#include "history/fileidentity.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <random>

namespace {

constexpr const char* StampAttribute = "user.drovane.stamp";
constexpr std::size_t StampSize = 16;

std::string StampOf(const std::string& hostPath) {
    std::string stamp(StampSize, '\0');
    if (getxattr(hostPath.c_str(), StampAttribute, stamp.data(), stamp.size()) ==
        static_cast<ssize_t>(stamp.size())) {
        return stamp;
    }
    stamp = RandomName();
    const bool put = setxattr(hostPath.c_str(), StampAttribute, stamp.data(), stamp.size(), 0) == 0;
    return put ? stamp : std::string();
}

}  // namespace

std::string FileIdentity(const std::string& hostPath) {
    struct statx state {};
    if (statx(AT_FDCWD, hostPath.c_str(), 0, STATX_INO | STATX_BTIME, &state) != 0) {
        return {};
    }
    const std::string number = std::to_string(state.stx_ino);
    if ((state.stx_mask & STATX_BTIME) != 0) {
        return number + "-" + std::to_string(state.stx_btime.tv_sec) + "." +
               std::to_string(state.stx_btime.tv_nsec);
    }
    return number + "-" + StampOf(hostPath);
}

std::string RandomName() {
    std::random_device device;
    std::string name;
    while (name.size() < StampSize) {
        const std::uint32_t number = device();
        for (int shift = 28; shift >= 0; shift -= 4) {
            name += "0123456789abcdef"[(number >> shift) & 15U];
        }
    }
    return name;
}
