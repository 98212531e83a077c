// Where the review of a project stood last, and how its window looked. It is a comfort and no datum of the
// project: it lies in the user's own settings, and losing it costs one click.
#pragma once

#include <QString>
#include <cstdint>
#include <string_view>

struct ReviewPlace {
    std::int32_t Section = -1;  // IDs; below 0: unknown or none
    std::int32_t Record = -1;
    double Seconds = 0.0;  // of the video

    bool operator==(const ReviewPlace&) const = default;
};
ReviewPlace LastPlace(std::string_view projectPath);
void RememberPlace(std::string_view projectPath, const ReviewPlace& place);

// The key of a setting for screens as large as this one, since what fits one crowds another.
class QWidget;
QString ScreenKey(const QWidget& window, const char* name);
