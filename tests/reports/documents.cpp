#include "tests/reports/documents.h"

#include <cstdlib>

#include "reports/ooxml/ziparchive.h"

namespace fs = std::filesystem;

std::string MakeDocument(const std::string& body, bool isTemplate) {
    const std::string type = "application/vnd.openxmlformats-officedocument.wordprocessingml.";
    const std::string office =
        "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";
    return WriteZip(
        {{"word/document.xml",
          R"(<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body>)" +
              body +
              R"(<w:sectPr><w:pgSz w:w="11000" w:h="16000"/><w:pgMar w:left="1000" w:right="1000"/></w:sectPr>)"
              "</w:body></w:document>",
          {},
          6},
         {"[Content_Types].xml",
          R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
          R"(<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
          R"(<Override PartName="/word/document.xml" ContentType=")" +
              type + (isTemplate ? "template" : "document") + R"(.main+xml"/></Types>)",
          {},
          6},
         {"_rels/.rels",
          R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
          R"(<Relationship Id="rId1" Target="word/document.xml" Type=")" +
              office + R"("/></Relationships>)",
          {},
          6},
         {"custom/unknown.bin", std::string("\0\1\xFF", 3), {}, 6}});
}

std::string MakeTable(const std::string& rows) {
    return "<w:tbl><w:tblPr/><w:tblGrid/>" + rows + "</w:tbl>";
}

std::map<std::string, std::string> PartsOf(const std::string& bytes) {
    std::map<std::string, std::string> parts;
    for (const ZipEntry& entry : ReadZip(bytes)) {
        parts[entry.Name] = entry.Bytes;
    }
    return parts;
}

int CountOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

std::string MakeBitmap(int width, int height, int colour) {
    const auto number = [](int value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) {
            text += static_cast<char>(value >> (8 * i) & 0xFF);
        }
        return text;
    };
    std::string row;
    for (int x = 0; x < width; ++x) {
        row += number(colour, 3);
    }
    row.resize((row.size() + 3) / 4 * 4);
    std::string pixels;
    for (int y = 0; y < height; ++y) {
        pixels += row;
    }
    return "BM" + number(54 + static_cast<int>(pixels.size()), 4) + number(0, 4) + number(54, 4) +
           number(40, 4) + number(width, 4) + number(height, 4) + number(1, 2) + number(24, 2) +
           number(0, 4) + number(static_cast<int>(pixels.size()), 4) + std::string(16, '\0') + pixels;
}

std::string FindWordProcessor() {
    return std::system("command -v soffice >/dev/null 2>&1") == 0 ? "soffice" : "";
}

bool Convert(const fs::path& file, const std::string& format, const fs::path& folder) {
    // A profile of its own, so that a running instance isn't asked instead.
    const std::string command = FindWordProcessor() + " -env:UserInstallation=file://" +
                                (folder / "profile").string() + " --headless --convert-to " + format +
                                " --outdir '" + folder.string() + "' '" + file.string() + "' >/dev/null 2>&1";
    const std::string extension = format.substr(0, format.find(':'));
    return std::system(command.c_str()) == 0 && fs::exists(folder / (file.stem().string() + "." + extension));
}

std::string FindValidator() {
    const char* named = std::getenv("DROVANE_OOXML_VALIDATOR");
    const std::string path = named != nullptr ? named : DROVANE_OOXML_VALIDATOR;
    return fs::exists(path) ? path : std::string();
}

bool IsValid(const fs::path& file) {
    return std::system(("'" + FindValidator() + "' '" + file.string() + "' >&2").c_str()) == 0;
}
