#include "geo/mapview/maptexts.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr int Decimals = 12;
constexpr std::string_view Hex = "0123456789ABCDEF";
constexpr std::string_view PictureHost = "drovane://picture/";

// A table as word processors write it. Single quotes, since it stands in a script's double ones.
constexpr const char* Bubble =
    "<table border='1' cellspacing='0' cellpadding='0' style='border-collapse:collapse;border:none'>"
    "<tr><td rowspan='6' style='padding:2px'><img width='197' height='157' src='%s'></td>"
    "<td style='%s'>测段名称</td><td style='%s'>%s</td></tr>"
    "<tr><td style='%s'>起始距离</td><td style='%s'>%s米</td></tr>"
    "<tr><td style='%s'>结束距离</td><td style='%s'>%s米</td></tr>"
    "<tr><td style='%s'>缺陷代码</td><td style='%s'>%s</td></tr>"
    "<tr><td style='%s'>缺陷名称</td><td style='%s'>%s</td></tr>"
    "<tr><td colspan='2' style='%s'><span style='color:#000'>备注</span> %s</td></tr></table>";
constexpr const char* LabelStyle = "font-family:宋体;font-size:9.0pt;padding:2px 5px;white-space:nowrap";
constexpr const char* ValueStyle = "font-family:宋体;font-size:9.0pt;padding:2px 5px;color:#8DB3E2";

std::string Degrees(double value) {
    return FormatNumber(value, Decimals);
}

int HexDigit(char c) {
    const std::size_t at = Hex.find(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    return at == Hex.npos ? -1 : static_cast<int>(at);
}

}  // namespace

std::string EncodeForPage(std::string_view text) {
    std::string encoded;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (text.substr(at, 2) == "\r\n" || c == '\n' || c == '\r') {
            encoded += "\\n";
            at += text.substr(at, 2) == "\r\n" ? 2U : 1U;
            continue;
        }
        if (c == '&' || c == '<' || c == '>' || c == '"' || c == '\'' || c == '\\' || c == '`') {
            encoded += "&#" + FormatInt(c) + ";";
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            encoded += ' ';
        } else if (text.substr(at, 3) == "\xE2\x80\xA8" || text.substr(at, 3) == "\xE2\x80\xA9") {
            encoded += "\\n";  // these end a line of a script
            at += 3;
            continue;
        } else if (const std::size_t length = Utf8CharLength(text.substr(at)); length > 0) {
            encoded += text.substr(at, length);
            at += length;
            continue;
        } else {
            encoded += '?';
        }
        ++at;
    }
    return encoded;
}

std::string AddMarkerCall(const _REC_DATA& record) {
    return "AddMarker(" + Degrees(record.GpsX) + "," + Degrees(record.GpsY) + ")";
}

std::string LineCall(const _TESTING_DATA& section) {
    return "Line(" + Degrees(section.GpsXStart) + "," + Degrees(section.GpsYStart) + "," +
           Degrees(section.GpsXEnd) + "," + Degrees(section.GpsYEnd) + ")";
}

std::string ShowInfoWndCall(const _REC_DATA& record, std::string_view bubble) {
    return "ShowInfoWnd(" + Degrees(record.GpsX) + "," + Degrees(record.GpsY) + ",\"" + std::string(bubble) +
           "\")";
}

std::string BubbleText(const _REC_DATA& record, std::string_view sectionName, std::string_view defectName) {
    const std::string picture = record.GetPicture1();
    const std::string metres[] = {FormatFixed(static_cast<double>(record.DistanceStart), 2),
                                  FormatFixed(static_cast<double>(record.DistanceEnd), 2)};
    std::vector<std::string> values{picture.empty() ? std::string("file:///") : PictureAddress(picture)};
    for (const std::string& value : {EncodeForPage(sectionName), metres[0], metres[1],
                                     EncodeForPage(record.DefectCode), EncodeForPage(defectName)}) {
        values.insert(values.end(), {LabelStyle, ValueStyle, value});
    }
    values.insert(values.end(), {ValueStyle, EncodeForPage(record.Comment)});
    return FillText(Bubble, values);
}

std::string PictureAddress(std::string_view path) {
    std::string address(PictureHost);
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 128 && std::isalnum(byte) != 0) {
            address += c;
        } else {
            address += {'%', Hex[byte / 16U], Hex[byte % 16U]};
        }
    }
    return address;
}

std::string PictureOfAddress(std::string_view addressPath) {
    std::string path;
    for (std::size_t at = addressPath.starts_with('/') ? 1 : 0; at < addressPath.size(); ++at) {
        if (addressPath[at] != '%') {
            path += addressPath[at];
            continue;
        }
        const int high = at + 2 < addressPath.size() ? HexDigit(addressPath[at + 1]) : -1;
        const int low = at + 2 < addressPath.size() ? HexDigit(addressPath[at + 2]) : -1;
        if (high < 0 || low < 0) {
            return {};
        }
        path += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return path;
}

std::string Guarded(std::string_view call) {
    return "try{" + std::string(call) + "}catch(e){}\n";
}
