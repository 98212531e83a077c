#include "tests/reviewwindow/fieldfolders.h"

#include <array>

std::string FieldDescription(const FieldSection& section) {
    std::array<std::string, 18> osd;
    for (std::size_t i = 0; i < osd.size(); ++i) {
        osd[i] = std::to_string(i + 1);
    }
    osd[4] = section.Start;
    osd[5] = section.End;
    osd[10] = section.Tester;
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<cfg><mdata name=\"n\" gentime=\"2026-03-14 09:26:53\">"
        "<videofilename value=\"" +
        section.Video + "\"/>";
    for (std::size_t i = 0; i < osd.size(); ++i) {
        xml += "<osd" + std::to_string(i + 1) + " value=\"" + osd[i] + "\"/>";
    }
    for (std::size_t i = 0; i < section.Items.size(); ++i) {
        const FieldItem& item = section.Items[i];
        const std::string n = std::to_string(i);
        xml += "<item index=\"" + n + "\" name=\"n\" code=\"" + item.Code + "\" fullname=\"f\" dist=\"" +
               std::to_string(item.Distance) +
               "\" len=\"0.4\" Longitude=\"113.2\" Latitude=\"23.1\" type=\"t\" time=\"0309\" level=\"" +
               std::to_string(item.Level) +
               "\" codeid=\"1\" itemid=\"1\" gentime=\"2026-03-14\"><picfilename value=\"" + n +
               ".jpg\" time=\"" + n + ".2\"/><desc>d</desc></item>";
    }
    return xml + "</mdata></cfg>";
}
