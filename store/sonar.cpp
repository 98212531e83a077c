#include "store/sonar.h"

#include <tinyxml.h>

#include <filesystem>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/CProfile.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "shell/xmlbounds.h"
#include "store/CDbRec.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view Extension = ".mdb";
constexpr const char* FolderEnding = "_sn";

std::string TextOf(const TiXmlElement& element, const char* name) {
    const char* value = element.Attribute(name);
    return value == nullptr ? std::string() : value;
}

int IntOf(const TiXmlElement& element, const char* name) {
    return ParseInt(TextOf(element, name));
}

float FloatOf(const TiXmlElement& element, const char* name) {
    return static_cast<float>(ParseDouble(TextOf(element, name)));
}

// Devices number the cells from 1 to 8, skip 9, and end with 10 and 11.
void TakeSiltItem(int number, std::string value, SonarData& data) {
    if (number == 10) {
        data.SiltItems[4].first = std::move(value);
    } else if (number == 11) {
        data.SiltItems[4].second = std::move(value);
    } else if (number < 9) {
        const int row = (number - 1) / 2;
        if (row >= 0) {
            auto& [first, second] = data.SiltItems[static_cast<std::size_t>(row)];
            (number % 2 == 1 ? first : second) = std::move(value);
        }
    }
}

void TakeElement(const TiXmlElement& element, SonarData& data) {
    constexpr std::string_view SiltName = "SiltItem";
    const std::string& name = element.ValueStr();
    const auto value = [&element] { return Utf8FromGbk(TextOf(element, "value")); };
    if (name.find("PipeItem") != std::string::npos) {
        data.PipeItems.push_back({IntOf(element, "CurRadius"), IntOf(element, "CurSiltDepth"),
                                  FloatOf(element, "Meter"), IntOf(element, "PipeWidth"),
                                  IntOf(element, "SiltDepth"), FloatOf(element, "SiltDepthPer")});
    } else if (name.find(SiltName) != std::string::npos) {
        TakeSiltItem(ParseInt(std::string_view(name).substr(SiltName.size())), value(), data);
    } else if (name == "cfginfo") {
        data.cfginfo = value();
    } else if (name == "videofilename") {
        data.videofilename = value();
    } else if (name == "dixmlfilename") {
        data.dixmlfilename = value();
    }
}

}  // namespace

std::string SonarFolder(std::string_view projectPath) {
    if (!projectPath.ends_with(Extension)) {
        return {};
    }
    std::string folder(projectPath);
    for (std::size_t at = folder.find(Extension); at != std::string::npos; at = folder.find(Extension, at)) {
        folder.replace(at, Extension.size(), FolderEnding);
    }
    return folder + '\\';
}

std::string OwnSonarFolder(std::string_view projectPath) {
    std::string folder = SonarFolder(projectPath);
    if (folder.empty()) {
        return {};
    }
    folder.pop_back();
    const fs::path host = HostFiles().HostPath(folder);
    std::error_code error;
    const bool itself = fs::is_directory(fs::symlink_status(host, error));
    // Both names may have been found without regard to case.
    const std::string file = fs::path(HostFiles().HostPath(projectPath)).filename().string();
    const std::string own =
        file.substr(0, file.size() - std::min(file.size(), Extension.size())) + FolderEnding;
    return itself && host.filename() == own ? folder : std::string();
}

void ReadSonarXml(std::string_view path, SonarData& data) {
    data = {};
    const std::optional<std::string> bytes = HostFiles().ReadFile(path, MaxSonarBytes);
    if (!bytes || bytes->find('\0') != std::string::npos || HasTooManyAttributes(*bytes) ||
        IsNestedTooDeep(*bytes)) {
        return;
    }
    TiXmlDocument document;
    // Where a declaration of UTF-8 stands over texts in the code page, the parser would lose its place among
    // their bytes and take quotes for parts of characters.
    document.Parse(bytes->c_str(), nullptr,
                   IsValidUtf8(*bytes) ? TIXML_DEFAULT_ENCODING : TIXML_ENCODING_LEGACY);
    if (document.Error()) {
        return;
    }
    if (const TiXmlElement* cfg = document.FirstChildElement("cfg")) {
        for (const TiXmlElement* child = cfg->FirstChildElement(); child != nullptr;
             child = child->NextSiblingElement()) {
            TakeElement(*child, data);
        }
    }
}

bool LoadSonarData(CDbRec& database, SonarData& data) {
    data = {};
    const std::string folder = SonarFolder(database.Path());
    if (!database.IsOpen() || folder.empty() || !HostFiles().IsFolder(folder)) {
        return false;
    }
    ReadSonarXml(folder + SonarXmlName, data);
    constexpr std::size_t MaxIniBytes = 65536;
    const CProfile ini(HostFiles().ReadFile(folder + SonarIniName, MaxIniBytes).value_or(std::string()));
    CRecDataArray records;
    if (!database.ReadRecords(ParseInt(ini.Get(SonarIniKey, SonarIniKey)), records, false)) {
        return false;
    }
    for (const _REC_DATA& record : records) {
        for (const std::string& picture : {record.GetPicture1(), record.GetPicture2()}) {
            if (!picture.empty()) {
                data.Pictures.push_back(picture);
            }
        }
    }
    return true;
}
