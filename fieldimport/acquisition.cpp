#include "fieldimport/acquisition.h"

#include <tinyxml2.h>

#include <optional>
#include <utility>

#include "shell/CClock.h"
#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "shell/xmlbounds.h"

using tinyxml2::XMLElement;

namespace {

constexpr std::size_t RequiredOsds = 11;
constexpr std::size_t ShortestGenTime = 8;   // what is shorter is no date
constexpr std::size_t LongestValue = 65535;  // bytes; no statement of the older engine took more

struct ItemAttribute {
    const char* Name;
    std::string AcquisitionItem::*Field;
};

// In the order in which they are asked for: the first one missing is the one that is told.
constexpr ItemAttribute ItemAttributes[] = {
    {"index", &AcquisitionItem::Index},         {"name", &AcquisitionItem::Name},
    {"code", &AcquisitionItem::Code},           {"fullname", &AcquisitionItem::FullName},
    {"dist", &AcquisitionItem::Dist},           {"len", &AcquisitionItem::Len},
    {"Longitude", &AcquisitionItem::Longitude}, {"Latitude", &AcquisitionItem::Latitude},
    {"type", &AcquisitionItem::Type},           {"time", &AcquisitionItem::ClockStart},
    {"level", &AcquisitionItem::Level},         {"codeid", &AcquisitionItem::CodeId},
    {"itemid", &AcquisitionItem::ItemId},       {"gentime", &AcquisitionItem::GenTime},
};

// Reads single values. Each gives false and a line where there is none; an empty value is none, and so is
// one that no column of a project was ever meant to hold.
class CValueReader {
public:
    explicit CValueReader(const CLineSink& sink) : m_sink(sink) {}

    bool Attribute(const XMLElement& element, const char* name, std::string& out) const {
        return Take(element.Attribute(name), std::string("no attribute: ") + name, out);
    }

    bool ChildAttribute(const XMLElement& parent, const std::string& child, const char* name,
                        std::string& out) const {
        const XMLElement* element = parent.FirstChildElement(child.c_str());
        if (element == nullptr) {
            return Miss("no element: " + child);
        }
        return Take(element->Attribute(name), "no element: " + child + ", attribute: " + name, out);
    }

    bool ChildText(const XMLElement& parent, const std::string& child, std::string& out) const {
        const XMLElement* element = parent.FirstChildElement(child.c_str());
        if (element == nullptr) {
            return Miss("no element: " + child);
        }
        return Take(element->GetText(), "no element: " + child + ", text", out);
    }

    bool Miss(const std::string& line) const {
        m_sink(line);
        return false;
    }

private:
    // The rest of a job's files lives in the code page, so a text means what is left of it there.
    bool Take(const char* value, const std::string& missing, std::string& out) const {
        if (value == nullptr || *value == '\0') {
            return Miss(missing);
        }
        const std::string_view text = value;
        if (text.size() > LongestValue) {
            return Miss(missing + " of at most " + std::to_string(LongestValue) + " bytes");
        }
        out = ThroughGbk(text);
        return true;
    }

    const CLineSink& m_sink;
};

bool IsTooShort(const std::string& genTime) {
    return GbkLength(genTime) < ShortestGenTime;
}

// ClockStart holds both hours, without a separator: "0306" is 3 and 6, "123" is 12 and 3, while "12" and "9"
// are a single hour.
void SplitClock(AcquisitionItem& item) {
    const std::string clock = item.ClockStart;
    const bool both = GbkLength(clock) > 2;
    item.ClockStart = GbkPrefix(clock, 2);
    item.ClockEnd = both ? GbkPrefix(GbkSuffix(clock, 2), 2) : "0";
}

bool ReadHeader(const CValueReader& reader, const XMLElement& mdata, const std::string& base,
                AcquisitionHeader& header) {
    if (!reader.Attribute(mdata, "name", header.Name)) {
        return false;
    }
    (void)reader.Attribute(mdata, "gentime", header.GenTime);
    if (!reader.ChildAttribute(mdata, "videofilename", "value", header.VideoFileName)) {
        return false;
    }
    header.VideoFileName.insert(0, base);
    for (std::size_t i = 0; i < header.Osd.size(); ++i) {
        const std::string name = "osd" + std::to_string(i + 1);
        if (!reader.ChildAttribute(mdata, name, "value", header.Osd[i]) && i < RequiredOsds) {
            return false;
        }
    }
    // "/" is how the trade writes that a depth, osd12 or osd13, wasn't measured.
    for (const std::size_t depth : {11U, 12U}) {
        if (header.Osd[depth].empty()) {
            header.Osd[depth] = "/";
        }
    }
    return true;
}

bool ReadItem(const CValueReader& reader, const XMLElement& element, const std::string& base,
              AcquisitionItem& item) {
    for (const auto& [name, field] : ItemAttributes) {
        if (!reader.Attribute(element, name, item.*field)) {
            return false;
        }
    }
    SplitClock(item);
    if (!reader.ChildAttribute(element, "picfilename", "value", item.PicFileName) ||
        !reader.ChildAttribute(element, "picfilename", "time", item.PicTime)) {
        return false;
    }
    item.PicFileName.insert(0, base);
    if (reader.ChildAttribute(element, "picfilename2", "value", item.PicFileName2)) {
        item.PicFileName2.insert(0, base);
        (void)reader.ChildAttribute(element, "picfilename2", "time", item.PicTime2);
    }
    (void)reader.ChildText(element, "desc", item.Desc);
    return true;
}

bool Parse(tinyxml2::XMLDocument& document, std::string_view path, const CValueReader& reader) {
    const std::optional<std::string> bytes = HostFiles().ReadFile(path, MaxAcquisitionBytes);
    if (!bytes) {
        return reader.Miss("no readable file of at most " + std::to_string(MaxAcquisitionBytes >> 20) +
                           " MB: " + std::string(path));
    }
    // Guessed names of manholes would be worse than none. And the parser takes a zero for the end, which
    // could leave half of a section behind.
    if (!IsValidUtf8(*bytes)) {
        return reader.Miss("not in UTF-8: " + std::string(path));
    }
    if (bytes->find('\0') != std::string::npos) {
        return reader.Miss("zero bytes in the text: " + std::string(path));
    }
    if (HasTooManyAttributes(*bytes)) {
        return reader.Miss("an element with thousands of attributes: " + std::string(path));
    }
    if (document.Parse(bytes->data(), bytes->size()) != tinyxml2::XML_SUCCESS) {
        return reader.Miss(document.ErrorStr());
    }
    return true;
}

}  // namespace

bool ReadAcquisitionXml(std::string_view folder, std::string_view path, AcquisitionHeader& header,
                        std::vector<AcquisitionItem>& items, const CLineSink& sink) {
    const CValueReader reader(sink);
    const std::string base = std::string(folder) + "\\";
    tinyxml2::XMLDocument document;
    if (!Parse(document, path, reader)) {
        return false;
    }
    const XMLElement* cfg = document.FirstChildElement("cfg");
    if (cfg == nullptr) {
        return reader.Miss("no cfg");
    }
    const XMLElement* mdata = cfg->FirstChildElement("mdata");
    if (mdata == nullptr) {
        return reader.Miss("no mdata");
    }
    if (!ReadHeader(reader, *mdata, base, header)) {
        return false;
    }
    for (const XMLElement* element = mdata->FirstChildElement("item"); element != nullptr;
         element = element->NextSiblingElement("item")) {
        AcquisitionItem item;
        if (!ReadItem(reader, *element, base, item)) {
            return false;
        }
        if (IsTooShort(header.GenTime)) {
            header.GenTime = item.GenTime;
        }
        items.push_back(std::move(item));
    }
    if (IsTooShort(header.GenTime)) {
        // The fixed time of day tells a made-up date from a measured one.
        header.GenTime = FormatTime(Clock().LocalNow(), "%Y/%m/%d 11:22:33");
    }
    return true;
}
