// A document made from a template (.dotx) or another document (.docx): opened, filled at its bookmarks and
// saved as .docx, without a word processor. Whatever of the template isn't filled stays as it is.
//
// All failures are COoxmlError. After one the document stands as filled so far and can still be saved. Texts
// are UTF-8, paths are path texts, sizes are points.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reports/ooxml/CBookmarks.h"
#include "reports/ooxml/CDocxForm.h"
#include "reports/ooxml/CDocxTable.h"
#include "reports/ooxml/CPackage.h"
#include "reports/ooxml/chart.h"

struct DocxPicture {
    std::string Relation;  // leads to the part with its bytes
    std::string Name;      // told to those who can't see it
    double Width = 0;
    double Height = 0;
};

class CDocx {
public:
    explicit CDocx(std::string_view path);
    CDocx(const CDocx&) = delete;
    CDocx& operator=(const CDocx&) = delete;

    // Names are compared without regard to case, as word processors do.
    bool HasBookmark(std::string_view name) const;
    // As written.
    std::vector<std::string> BookmarkNames() const;
    std::string BookmarkText(std::string_view name);
    // Replaces the bookmark's range; the bookmark stays around the new text.
    void SetText(std::string_view bookmark, std::string_view text);

    // The first table of the bookmark's range, or the one that the bookmark begins in.
    CDocxTable Table(std::string_view bookmark);
    // Takes that table out, to be pasted as often as wanted in its place.
    CDocxForm TakeForm(std::string_view bookmark);

    // Nothing if the file can't be read or is no picture. It is read once more when the document is saved;
    // files of equal content are stored once.
    std::optional<DocxPicture> LoadPicture(std::string_view path);
    // Takes the place of the first picture of the range; not wider than the text. Without one it goes to the
    // range's beginning.
    void ReplacePicture(std::string_view bookmark, const DocxPicture& picture);
    // Replaces the bookmark's range; not wider than the text.
    void SetChart(std::string_view bookmark, const ChartSpec& spec);

    // Whole or not at all.
    void Save(std::string_view path);
    // To an empty file. False if it can't be written, or a picture can't be read any more.
    bool Write(const CUnixFile& file);

    // A picture as XML of a run.
    std::string PictureRun(const DocxPicture& picture, double width, double height);

    // Gives the drawings of what was copied numbers of their own.
    void NumberDrawings(XmlElement* copy);

private:
    struct Media {
        std::string Relation;
        std::string Path;
    };

    void FindNumbers(tinyxml2::XMLDocument& part);
    XmlElement* FirstTable(std::string_view bookmark);
    double TextWidth(XmlNode* near) const;
    std::string Run(const std::string& graphic, const std::string& name, double width, double height);
    const std::string* KnownMedia(std::string_view bytes, std::uint64_t key) const;

    CPackage m_package;
    std::string m_mainPart;
    tinyxml2::XMLDocument m_xml;
    CBookmarks m_bookmarks{m_xml};
    // By hash of the content.
    std::unordered_multimap<std::uint64_t, Media> m_media;
    int m_lastDrawing = 0;
};
