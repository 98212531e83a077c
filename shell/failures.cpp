#include "shell/failures.h"

#include <cerrno>
#include <system_error>

#include "shell/language.h"

namespace {

constexpr int MessageNotAllowed = 3300;
constexpr int MessageReadOnlyDisk = 3301;
constexpr int MessageDiskFull = 3302;
constexpr int MessageNotThere = 3303;
constexpr int MessageNoFile = 3304;
constexpr int MessageThereAlready = 3305;

int MessageOf(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return MessageNotAllowed;
        case EROFS:
            return MessageReadOnlyDisk;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return MessageDiskFull;
        case ENOENT:
        case ENOTDIR:
            return MessageNotThere;
        case EISDIR:
        case EINVAL:
            return MessageNoFile;
        case EEXIST:
            return MessageThereAlready;
        default:
            return 0;
    }
}

}  // namespace

std::string FailureText(int error) {
    if (error == 0) {
        return {};
    }
    const std::string known = LoadMessage(MessageOf(error));
    return known.empty() ? std::generic_category().message(error) : known;
}
