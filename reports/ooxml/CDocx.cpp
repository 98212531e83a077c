#include "reports/ooxml/CDocx.h"

#include <algorithm>
#include <functional>

#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/pictures.h"
#include "reports/ooxml/xmltext.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t LargestTemplate = 32U << 20U;
constexpr std::size_t LargestPicture = 64U << 20U;
constexpr double UnitsPerPoint = 12700;
constexpr double TwipsPerPoint = 20;
constexpr double UsualTextWidth = 450;
constexpr const char* WordSpace = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";
const std::string WordTypes = "application/vnd.openxmlformats-officedocument.wordprocessingml.";
const std::string Relations = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
const std::string Drawing = "http://schemas.openxmlformats.org/drawingml/2006/";

std::string ReadTemplate(std::string_view path) {
    std::optional<std::string> bytes = HostFiles().ReadFile(path, LargestTemplate);
    if (!bytes) {
        throw COoxmlError(OoxmlFault::NotRead, {HostFiles().HostPath(path)});
    }
    return std::move(*bytes);
}

std::string Units(double points) {
    return FormatInt(static_cast<std::int64_t>(RoundTo(points * UnitsPerPoint, 0)));
}

// `target` relative to the folder of `from`.
std::string RelativeTo(const std::string& from, const std::string& target) {
    const std::size_t slash = from.rfind('/');
    const std::string folder = slash == from.npos ? "" : from.substr(0, slash + 1);
    return target.starts_with(folder) ? target.substr(folder.size()) : "/" + target;
}

bool IsPicture(const XmlNode* node) {
    return Is(node, "w:drawing") || Is(node, "w:pict") || Is(node, "w:object");
}

}  // namespace

CDocx::CDocx(std::string_view path) : m_package(ReadTemplate(path)) {
    m_mainPart = m_package.Related({}, "officeDocument");
    const std::string type = m_package.MediaType(m_mainPart);
    if (type != WordTypes + "document.main+xml" && type != WordTypes + "template.main+xml") {
        throw COoxmlError(OoxmlFault::NoDocument);
    }
    ParseXml(m_xml, m_package.Bytes(m_mainPart), m_mainPart);
    if (!Is(m_xml.RootElement(), "w:document") || Attribute(m_xml.RootElement(), "xmlns:w") != WordSpace ||
        Child(m_xml.RootElement(), "w:body") == nullptr) {
        throw COoxmlError(OoxmlFault::DamagedPart, {m_mainPart});
    }
    m_package.SetMediaType(m_mainPart, WordTypes + "document.main+xml");
    m_bookmarks.Collect();
    FindNumbers(m_xml);
    for (const std::string& part : m_package.Names()) {
        const std::string kind = m_package.MediaType(part);
        if (kind == WordTypes + "header+xml" || kind == WordTypes + "footer+xml") {
            tinyxml2::XMLDocument other;
            ParseXml(other, m_package.Bytes(part), part);
            FindNumbers(other);
        }
    }
}

// Numbers of drawings are unique in the document with its headers and footers.
void CDocx::FindNumbers(tinyxml2::XMLDocument& part) {
    EachElement(part.RootElement(), [&](XmlElement* element) {
        const int number = Is(element, "wp:docPr") ? ParseInt(Attribute(element, "id")) : 0;
        if (number < LargestCountedNumber) {
            m_lastDrawing = std::max(m_lastDrawing, number);
        }
    });
}

void CDocx::NumberDrawings(XmlElement* copy) {
    EachElement(copy, [&](XmlElement* element) {
        if (Is(element, "wp:docPr")) {
            element->SetAttribute("id", ++m_lastDrawing);
        }
    });
}

bool CDocx::HasBookmark(std::string_view name) const {
    return m_bookmarks.Has(name);
}

std::vector<std::string> CDocx::BookmarkNames() const {
    return m_bookmarks.Names();
}

std::string CDocx::BookmarkText(std::string_view name) {
    const BookmarkRange range = m_bookmarks.Find(name);
    std::string text;
    for (XmlNode* node = range.Start; node != nullptr && node != range.End;
         node = NextNode(node, m_xml.RootElement())) {
        if (Is(node, "w:t") && node->ToElement()->GetText() != nullptr) {
            text += node->ToElement()->GetText();
        }
    }
    return text;
}

void CDocx::SetText(std::string_view bookmark, std::string_view text) {
    const BookmarkRange found = m_bookmarks.Find(bookmark);
    XmlElement* around = Ancestor(found.Start, "w:p");
    const XmlElement* former = nullptr;
    // The look of the text that goes, before that of the paragraph's beginning.
    for (XmlNode* node = found.Start; node != nullptr && node != found.End && former == nullptr;
         node = NextNode(node, m_xml.RootElement())) {
        former = Is(node, "w:r") ? Child(node, "w:rPr") : nullptr;
    }
    if (former == nullptr && around != nullptr) {
        former = TextLook(around);
    }
    XmlNode* copy = former == nullptr ? nullptr : former->DeepClone(&m_xml);
    const BookmarkRange range = m_bookmarks.Clear(bookmark);
    std::string line = CleanText(text);
    // One paragraph stays one, so that the template decides how the text stands.
    std::erase(line, '\r');
    InsertText(range.Start->Parent()->ToElement(), range.Start, line,
               copy == nullptr ? nullptr : copy->ToElement());
    if (copy != nullptr) {
        Remove(copy);
    }
}

XmlElement* CDocx::FirstTable(std::string_view bookmark) {
    const BookmarkRange range = m_bookmarks.Find(bookmark);
    if (XmlElement* around = Ancestor(range.Start, "w:tbl")) {
        return around;
    }
    for (XmlNode* node = range.Start; node != nullptr && node != range.End;
         node = NextNode(node, m_xml.RootElement())) {
        if (Is(node, "w:tbl")) {
            return node->ToElement();
        }
    }
    throw COoxmlError(OoxmlFault::NoTable, {std::string(bookmark)});
}

CDocxTable CDocx::Table(std::string_view bookmark) {
    return {*this, FirstTable(bookmark), std::string(bookmark)};
}

CDocxForm CDocx::TakeForm(std::string_view bookmark) {
    XmlElement* table = FirstTable(bookmark);
    m_bookmarks.Forget(table);
    return {*this, table, std::string(bookmark)};
}

double CDocx::TextWidth(XmlNode* near) const {
    // The settings of a section stand in its last paragraph, or at the end of the text.
    for (const XmlNode* node = near; node != nullptr; node = NextNode(const_cast<XmlNode*>(node), nullptr)) {
        if (!Is(node, "w:sectPr")) {
            continue;
        }
        const XmlElement* page = node->FirstChildElement("w:pgSz");
        const XmlElement* margins = node->FirstChildElement("w:pgMar");
        const double width = ParseDouble(Attribute(page, "w:w")) - ParseDouble(Attribute(margins, "w:left")) -
                             ParseDouble(Attribute(margins, "w:right"));
        return width > 0 ? width / TwipsPerPoint : UsualTextWidth;
    }
    return UsualTextWidth;
}

const std::string* CDocx::KnownMedia(std::string_view bytes, std::uint64_t key) const {
    const auto [first, last] = m_media.equal_range(key);
    for (auto at = first; at != last; ++at) {
        if (HostFiles().ReadFile(at->second.Path, LargestPicture) == bytes) {
            return &at->second.Relation;
        }
    }
    return nullptr;
}

std::optional<DocxPicture> CDocx::LoadPicture(std::string_view path) {
    const std::optional<std::string> bytes = HostFiles().ReadFile(path, LargestPicture);
    const std::optional<PictureInfo> info = bytes ? ReadPictureInfo(*bytes) : std::nullopt;
    if (!info) {
        return std::nullopt;
    }
    DocxPicture picture{{}, GetFileName(path), info->Width, info->Height};
    const std::uint64_t key = std::hash<std::string_view>()(*bytes);
    if (const std::string* known = KnownMedia(*bytes, key)) {
        picture.Relation = *known;
        return picture;
    }
    const std::string folder = m_mainPart.substr(0, m_mainPart.rfind('/') + 1);
    const std::string part = m_package.FreeName(folder + "media/image", info->Extension);
    // All but bitmaps are compressed as they are.
    m_package.AddFile(part, HostFiles().HostPath(path), std::string_view(info->Extension) == "bmp" ? 1 : 0);
    m_package.SetExtensionType(info->Extension, info->MediaType);
    picture.Relation = m_package.Relate(m_mainPart, Relations + "image", RelativeTo(m_mainPart, part));
    m_media.emplace(key, Media{picture.Relation, std::string(path)});
    return picture;
}

std::string CDocx::Run(const std::string& graphic, const std::string& name, double width, double height) {
    const std::string number = FormatInt(++m_lastDrawing);
    // Names are declared here, since a template may have bound other prefixes to them.
    return "<w:r><w:drawing><wp:inline xmlns:wp=\"" + Drawing + "wordprocessingDrawing\" xmlns:a=\"" +
           Drawing +
           "main\" xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" "
           R"(distT="0" distB="0" distL="0" distR="0"><wp:extent cx=")" +
           Units(width) + "\" cy=\"" + Units(height) + R"("/><wp:docPr id=")" + number +
           R"(" name="Drawing )" + number + R"(" descr=")" + Escape(name) +
           R"("/><wp:cNvGraphicFramePr><a:graphicFrameLocks noChangeAspect="1"/></wp:cNvGraphicFramePr>)"
           "<a:graphic>" +
           graphic + "</a:graphic></wp:inline></w:drawing></w:r>";
}

std::string CDocx::PictureRun(const DocxPicture& picture, double width, double height) {
    const std::string space = Drawing + "picture";
    return Run("<a:graphicData uri=\"" + space + "\"><pic:pic xmlns:pic=\"" + space +
                   R"("><pic:nvPicPr><pic:cNvPr id="0" name=")" + Escape(picture.Name) +
                   R"("/><pic:cNvPicPr/></pic:nvPicPr><pic:blipFill><a:blip r:embed=")" + picture.Relation +
                   R"("/><a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr><a:xfrm>)"
                   R"(<a:off x="0" y="0"/><a:ext cx=")" +
                   Units(width) + "\" cy=\"" + Units(height) +
                   R"("/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom></pic:spPr></pic:pic>)"
                   "</a:graphicData>",
               picture.Name, width, height);
}

void CDocx::ReplacePicture(std::string_view bookmark, const DocxPicture& picture) {
    const BookmarkRange range = m_bookmarks.Find(bookmark);
    const double scale = std::min(1.0, TextWidth(range.Start) / picture.Width);
    XmlNode* added = NewRaw(&m_xml, PictureRun(picture, picture.Width * scale, picture.Height * scale));
    for (XmlNode* node = range.Start; node != nullptr && node != range.End;
         node = NextNode(node, m_xml.RootElement())) {
        if (!IsPicture(node)) {
            continue;
        }
        // Newer drawings stand in a pair with an older form of the same.
        XmlElement* choice = Ancestor(node, "mc:AlternateContent");
        XmlNode* former = choice != nullptr ? choice : node;
        if (XmlElement* run = Ancestor(former, "w:r")) {
            InsertBehind(run->Parent(), run, added);
            EachMark(former, [&](XmlElement* mark) { InsertBehind(run->Parent(), added, mark); });
            Remove(former);
            return;
        }
    }
    m_bookmarks.MoveIntoParagraph(range.Start, true);
    InsertBehind(range.Start->Parent(), range.Start, added);
}

void CDocx::SetChart(std::string_view bookmark, const ChartSpec& spec) {
    (void)m_bookmarks.Find(bookmark);
    const std::string folder = m_mainPart.substr(0, m_mainPart.rfind('/') + 1);
    const std::string workbook = ChartWorkbook(spec);
    const std::string bookPart = m_package.FreeName(folder + "embeddings/workbook", "xlsx");
    const std::string chartPart = m_package.FreeName(folder + "charts/chart", "xml");
    m_package.Set(bookPart, workbook);
    m_package.SetExtensionType("xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet");
    const std::string toBook =
        m_package.Relate(chartPart, Relations + "package", "../" + RelativeTo(m_mainPart, bookPart));
    m_package.Set(chartPart, ChartXml(spec, toBook));
    m_package.SetMediaType(chartPart, "application/vnd.openxmlformats-officedocument.drawingml.chart+xml");
    const std::string toChart =
        m_package.Relate(m_mainPart, Relations + "chart", RelativeTo(m_mainPart, chartPart));

    const BookmarkRange range = m_bookmarks.Clear(bookmark);
    const double scale = std::min(1.0, TextWidth(range.Start) / spec.Width);
    const std::string space = Drawing + "chart";
    InsertBehind(range.Start->Parent(), range.Start,
                 NewRaw(&m_xml, Run("<a:graphicData uri=\"" + space + "\"><c:chart xmlns:c=\"" + space +
                                        "\" r:id=\"" + toChart + "\"/></a:graphicData>",
                                    "", spec.Width * scale, spec.Height * scale)));
}

bool CDocx::Write(const CUnixFile& file) {
    m_package.Set(m_mainPart, PrintXml(m_xml));
    return m_package.Write(file);
}

void CDocx::Save(std::string_view path) {
    if (!HostFiles().WriteFile(path, [this](const CUnixFile& file) { return Write(file); })) {
        throw COoxmlError(OoxmlFault::NotWritten, {HostFiles().HostPath(path)});
    }
}
