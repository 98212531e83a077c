#include "reports/ooxml/CPackage.h"

#include <algorithm>
#include <cctype>

#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/relations.h"
#include "reports/ooxml/xmltree.h"
#include "shell/numbers.h"

namespace {

constexpr const char* TypesPart = "[Content_Types].xml";
constexpr const char* RelationsSpace = "http://schemas.openxmlformats.org/package/2006/relationships";

bool SameExtension(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

}  // namespace

CPackage::CPackage(std::string_view bytes) : m_entries(ReadZip(bytes)) {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        m_byName.emplace(m_entries[i].Name, i);
    }
    ParseXml(m_types, Bytes(TypesPart), TypesPart);
}

ZipEntry& CPackage::Entry(const std::string& name) {
    const auto [found, added] = m_byName.emplace(name, m_entries.size());
    if (added) {
        m_entries.push_back({name, {}, {}, 6});
    }
    return m_entries[found->second];
}

std::vector<std::string> CPackage::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, entry] : m_byName) {
        names.push_back(name);
    }
    return names;
}

const std::string& CPackage::Bytes(const std::string& name) const {
    const auto found = m_byName.find(name);
    if (found == m_byName.end()) {
        throw COoxmlError(OoxmlFault::DamagedPart, {name});
    }
    return m_entries[found->second].Bytes;
}

void CPackage::Set(const std::string& name, std::string bytes) {
    Entry(name).Bytes = std::move(bytes);
}

void CPackage::AddFile(const std::string& name, const std::string& hostPath, unsigned int level) {
    ZipEntry& entry = Entry(name);
    entry.HostPath = hostPath;
    entry.Level = level;
}

std::string CPackage::FreeName(const std::string& stem, const std::string& extension) {
    for (;;) {
        std::string name = stem + FormatInt(++m_lastNumbers[stem]) + "." + extension;
        if (!Has(name)) {
            return name;
        }
    }
}

std::string CPackage::MediaType(const std::string& name) const {
    std::string byExtension;
    for (const XmlElement* type = m_types.RootElement()->FirstChildElement(); type != nullptr;
         type = type->NextSiblingElement()) {
        if (Is(type, "Override") && Attribute(type, "PartName") == "/" + name) {
            return Attribute(type, "ContentType");
        }
        if (Is(type, "Default") &&
            SameExtension(Attribute(type, "Extension"), name.substr(name.rfind('.') + 1))) {
            byExtension = Attribute(type, "ContentType");
        }
    }
    return byExtension;
}

void CPackage::SetMediaType(const std::string& name, const std::string& type) {
    XmlElement* root = m_types.RootElement();
    XmlElement* entry = root->FirstChildElement("Override");
    while (entry != nullptr && Attribute(entry, "PartName") != "/" + name) {
        entry = entry->NextSiblingElement("Override");
    }
    if (entry == nullptr) {
        entry = root->InsertNewChildElement("Override");
        entry->SetAttribute("PartName", ("/" + name).c_str());
    }
    entry->SetAttribute("ContentType", type.c_str());
}

void CPackage::SetExtensionType(const std::string& extension, const std::string& type) {
    if (!MediaType("." + extension).empty()) {
        return;
    }
    XmlElement* entry = m_types.NewElement("Default");
    entry->SetAttribute("Extension", extension.c_str());
    entry->SetAttribute("ContentType", type.c_str());
    m_types.RootElement()->InsertFirstChild(entry);
}

tinyxml2::XMLDocument& CPackage::Relations(const std::string& from) {
    const auto [found, added] = m_relations.try_emplace(from);
    if (added) {
        const std::string name = RelationsName(from);
        if (Has(name)) {
            ParseXml(found->second, Bytes(name), name);
        } else {
            found->second.InsertEndChild(
                found->second.NewDeclaration(R"(xml version="1.0" encoding="UTF-8" standalone="yes")"));
            XmlElement* root = found->second.NewElement("Relationships");
            root->SetAttribute("xmlns", RelationsSpace);
            found->second.InsertEndChild(root);
        }
    }
    return found->second;
}

std::string CPackage::Related(const std::string& from, std::string_view kind) const {
    const std::string name = RelationsName(from);
    if (!Has(name)) {
        return {};
    }
    tinyxml2::XMLDocument relations;
    ParseXml(relations, Bytes(name), name);
    for (const XmlElement* entry = relations.RootElement()->FirstChildElement(); entry != nullptr;
         entry = entry->NextSiblingElement()) {
        if (Attribute(entry, "Type").ends_with("/" + std::string(kind)) &&
            Attribute(entry, "TargetMode") != "External") {
            return ResolveTarget(from, Attribute(entry, "Target"));
        }
    }
    return {};
}

std::string CPackage::Relate(const std::string& from, const std::string& type, const std::string& target) {
    XmlElement* root = Relations(from).RootElement();
    int& last = m_lastNumbers["relations of " + from];
    if (last == 0) {
        for (const XmlElement* entry = root->FirstChildElement(); entry != nullptr;
             entry = entry->NextSiblingElement()) {
            const std::string id = Attribute(entry, "Id");
            const int number = id.starts_with("rId") ? ParseInt(id.substr(3)) : 0;
            if (number < LargestCountedNumber) {
                last = std::max(last, number);
            }
        }
    }
    const std::string id = "rId" + FormatInt(++last);
    XmlElement* entry = root->InsertNewChildElement("Relationship");
    entry->SetAttribute("Id", id.c_str());
    entry->SetAttribute("Type", type.c_str());
    entry->SetAttribute("Target", target.c_str());
    return id;
}

const std::vector<ZipEntry>& CPackage::Assemble() {
    Set(TypesPart, PrintXml(m_types));
    for (const auto& [from, relations] : m_relations) {
        Set(RelationsName(from), PrintXml(relations));
    }
    // Some readers look at the first bytes to tell what a file is.
    const auto rank = [](const ZipEntry& entry) {
        return entry.Name == TypesPart ? 0 : entry.Name == "_rels/.rels" ? 1 : 2;
    };
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [&](const ZipEntry& a, const ZipEntry& b) { return rank(a) < rank(b); });
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        m_byName[m_entries[i].Name] = i;
    }
    return m_entries;
}

bool CPackage::Write(const CUnixFile& file) {
    return WriteZip(file, Assemble());
}

std::string CPackage::Write() {
    return WriteZip(Assemble());
}
