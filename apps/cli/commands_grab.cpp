// Frames of videos as pictures.
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "shell/numbers.h"
#include "workbench/capture/grabframe.h"

namespace {

double ParsePosition(const std::string& text) {
    const std::optional<double> seconds = ParseWholeDouble(text);
    if (!seconds) {
        throw CUsageError("no number of seconds: " + text);
    }
    return *seconds;
}

}  // namespace

int RunGrab(const CommandContext& context) {
    const CArguments arguments(context.Words, {"-o"}, {});
    arguments.ExpectPlaces(2, 2);
    const std::string& video = arguments.Places()[0];
    const double seconds = ParsePosition(arguments.Places()[1]);
    const std::string picture = arguments.Require("-o");
    switch (TryGrabFrame(PathArgument(context, video), seconds, TargetArgument(context, picture, {video}))) {
        case GrabResult::Done:
            return 0;
        case GrabResult::NoFile:
            throw std::runtime_error(video + " can't be read, or is no file");
        case GrabResult::NoVideo:
            throw std::runtime_error(video + " holds no video that can be decoded");
        case GrabResult::NoFrame:
            throw std::runtime_error(video + ": no frame can be decoded");
        case GrabResult::TooSlow:
            throw std::runtime_error(video + ": no frame within the time limit");
        case GrabResult::NotWritten:
            throw std::runtime_error(picture + " can't be written");
    }
    return 1;
}
