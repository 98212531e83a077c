#include "workbench/dialogs/reviewplace.h"

#include <QScreen>
#include <QWidget>

#include "shell/dialogs/projectsettings.h"

namespace {

constexpr const char* SectionGroup = "LastSection";
constexpr const char* RecordGroup = "LastRecord";
constexpr const char* SecondGroup = "LastSecond";

}  // namespace

ReviewPlace LastPlace(std::string_view projectPath) {
    ReviewPlace place;
    if (const QVariant section = ProjectSetting(SectionGroup, projectPath); section.isValid()) {
        place.Section = section.toInt();
    }
    if (const QVariant record = ProjectSetting(RecordGroup, projectPath); record.isValid()) {
        place.Record = record.toInt();
    }
    place.Seconds = ProjectSetting(SecondGroup, projectPath).toDouble();
    return place;
}

void RememberPlace(std::string_view projectPath, const ReviewPlace& place) {
    KeepProjectSetting(SectionGroup, projectPath, place.Section);
    KeepProjectSetting(RecordGroup, projectPath, place.Record);
    KeepProjectSetting(SecondGroup, projectPath, place.Seconds);
}

QString ScreenKey(const QWidget& window, const char* name) {
    const QSize size = window.screen()->size();
    return QString("Layout%1x%2/%3").arg(size.width()).arg(size.height()).arg(name);
}
