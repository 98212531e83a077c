#include "tests/excel/CReadWorkbook.h"

#include <gtest/gtest.h>
#include <tinyxml2.h>
#include <zip.h>

namespace {

using tinyxml2::XMLElement;

std::string TextOf(const XMLElement* element) {
    return element != nullptr && element->GetText() != nullptr ? element->GetText() : "";
}

}  // namespace

CReadWorkbook::CReadWorkbook(const std::string& bytes) {
    zip_error_t error;
    zip_t* archive =
        zip_open_from_source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error), 0, &error);
    if (archive == nullptr) {
        ADD_FAILURE() << "no archive";
        return;
    }
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t state;
        zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &state);
        std::string& part = m_parts[state.name];
        part.resize(state.size);
        zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
        EXPECT_EQ(zip_fread(file, part.data(), state.size), static_cast<zip_int64_t>(state.size));
        zip_fclose(file);
    }
    zip_discard(archive);
    ReadFormats();
    ReadCells();
}

std::string CReadWorkbook::Part(const std::string& name) const {
    const auto found = m_parts.find(name);
    return found == m_parts.end() ? std::string() : found->second;
}

ReadCell CReadWorkbook::Cell(const std::string& name) const {
    const auto found = m_cells.find(name);
    return found == m_cells.end() ? ReadCell() : found->second;
}

void CReadWorkbook::ReadFormats() {
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(Part("xl/styles.xml").c_str()), tinyxml2::XML_SUCCESS);
    std::map<int, std::string> pictures{{1, "0"}, {2, "0.00"}};  // built in
    const XMLElement* root = document.RootElement();
    if (const XMLElement* list = root->FirstChildElement("numFmts")) {
        for (auto* format = list->FirstChildElement(); format; format = format->NextSiblingElement()) {
            pictures[format->IntAttribute("numFmtId")] = format->Attribute("formatCode");
        }
    }
    int style = 0;
    for (auto* xf = root->FirstChildElement("cellXfs")->FirstChildElement(); xf;
         xf = xf->NextSiblingElement()) {
        m_formats[style++] = pictures[xf->IntAttribute("numFmtId")];
    }
}

void CReadWorkbook::ReadCells() {
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(Part("xl/worksheets/sheet1.xml").c_str()), tinyxml2::XML_SUCCESS);
    const XMLElement* data = document.RootElement()->FirstChildElement("sheetData");
    for (auto* row = data->FirstChildElement("row"); row; row = row->NextSiblingElement("row")) {
        ++m_rows;
        EXPECT_EQ(row->IntAttribute("r"), m_rows);
        for (auto* c = row->FirstChildElement("c"); c; c = c->NextSiblingElement("c")) {
            ReadCell& cell = m_cells[c->Attribute("r")];
            const std::string type = c->Attribute("t") != nullptr ? c->Attribute("t") : "n";
            if (const XMLElement* formula = c->FirstChildElement("f")) {
                EXPECT_EQ(type, "str") << c->Attribute("r");
                cell.Formula = TextOf(formula);
                cell.Text = TextOf(c->FirstChildElement("v"));
                ++m_formulas;
            } else if (type == "inlineStr") {
                cell.Text = TextOf(c->FirstChildElement("is")->FirstChildElement("t"));
            } else if (c->FirstChildElement("v") != nullptr) {
                EXPECT_EQ(type, "n") << c->Attribute("r");
                cell.Number = TextOf(c->FirstChildElement("v"));
                cell.Format = m_formats[c->IntAttribute("s")];
            }
        }
    }
}
