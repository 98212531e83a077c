#include "store/CDbError.h"

#include "shell/CPrompts.h"
#include "shell/language.h"

namespace {

int TextOf(CDbError::Why why) {
    switch (why) {
        case CDbError::Why::ReadOnly:
            return 3417;
        case CDbError::Why::DiskFull:
            return 3302;
        case CDbError::Why::DiskFailed:
            return 3418;
        case CDbError::Why::FileGone:
            return 3419;
        case CDbError::Why::Other:
            break;
    }
    return 0;
}

}  // namespace

std::string FailureLine(const CDbError& error) {
    const int text = TextOf(error.Reason);
    return text == 0 ? std::string() : "\r\n" + LoadMessage(text);
}

void ShowFailure(int number, const CDbError& error) {
    ShowMessage(number, FailureLine(error));
}
