#include "fieldimport/xlsxsheet.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fieldimport/CNumberStyles.h"
#include "fieldimport/CSheetError.h"
#include "fieldimport/xlsxtext.h"
#include "reports/ooxml/CZipReader.h"
#include "reports/ooxml/relations.h"
#include "reports/ooxml/xmlstream.h"
#include "shell/numbers.h"

namespace {

// Of a part, unpacked. A sheet with its most rows and a dozen columns takes half of it.
constexpr std::uint64_t MostSheetBytes = std::uint64_t{1} << 30;
constexpr std::uint64_t MostSmallBytes = std::uint64_t{16} << 20;
constexpr std::int64_t LastRow = 1048576;
constexpr std::int64_t LastColumn = 16384;

[[noreturn]] void Refuse() {
    throw CSheetError(SheetFault::Damaged);
}

struct Relation {
    std::string Type;  // the last word
    std::string Target;
};

class CRelationReader : public CXmlEvents {
public:
    explicit CRelationReader(std::string from) : m_from(std::move(from)) {}
    void Begin(std::string_view name, const char** attributes) override {
        if (name == "Relationship") {
            const std::string_view type = AttributeOf(attributes, "Type");
            ById[std::string(AttributeOf(attributes, "Id"))] = {
                std::string(type.substr(type.rfind('/') + 1)),
                ResolveTarget(m_from, std::string(AttributeOf(attributes, "Target")))};
        }
    }
    void End(std::string_view) override {}
    void Text(std::string_view) override {}

    std::string Find(std::string_view type) const {
        for (const auto& [id, relation] : ById) {
            if (relation.Type == type) {
                return relation.Target;
            }
        }
        return {};
    }

    std::map<std::string, Relation> ById;

private:
    std::string m_from;
};

CRelationReader RelationsOf(const CZipReader& archive, const std::string& part) {
    CRelationReader reader(part);
    const std::string name = RelationsName(part);
    if (archive.Has(name)) {
        StreamXml(archive, name, MostSmallBytes, reader);
    }
    return reader;
}

// The relationships of the sheets, in the order of the workbook's list.
class CWorkbookReader : public CXmlEvents {
public:
    void Begin(std::string_view name, const char** attributes) override {
        if (name != "sheet") {
            return;
        }
        for (; *attributes != nullptr; attributes += 2) {
            if (std::string_view(attributes[0]).ends_with(":id")) {
                Sheets.emplace_back(attributes[1]);
            }
        }
    }
    void End(std::string_view) override {}
    void Text(std::string_view) override {}

    std::vector<std::string> Sheets;
};

// From 1. Letters of a reference such as "AB12".
std::int64_t ColumnOf(std::string_view reference) {
    std::int64_t column = 0;
    for (const char c : reference) {
        if (c < 'A' || c > 'Z') {
            break;
        }
        column = column * 26 + (c - 'A' + 1);
        if (column > LastColumn) {
            Refuse();
        }
    }
    return column;
}

class CSheetReader : public CXmlEvents {
public:
    CSheetReader(const CSharedTexts& texts, const CNumberStyles& styles, CGpsRows& rows)
        : m_texts(texts), m_styles(styles), m_rows(rows) {}

    void Begin(std::string_view name, const char** attributes) override {
        if (name == "row") {
            BeginRow(AttributeOf(attributes, "r"));
        } else if (name == "c") {
            BeginCell(attributes);
        } else if (name == "v") {
            m_value = m_column <= GpsColumns;
        } else if (m_column <= GpsColumns) {
            m_text.Begin(name);
        }
    }

    void End(std::string_view name) override {
        if (name == "row") {
            m_rows.Add(m_row, std::move(m_cells));
        } else if (name == "c") {
            EndCell();
        } else if (name == "v") {
            m_value = false;
        } else {
            m_text.End(name);
        }
    }

    void Text(std::string_view text) override {
        if (m_value) {
            AppendText(m_raw, text);
        } else {
            m_text.Add(text);
        }
    }

private:
    void BeginRow(std::string_view number) {
        const std::int64_t row = number.empty() ? m_row + 1 : ParseWholeInt(number).value_or(0);
        if (row <= m_row || row > LastRow) {
            Refuse();
        }
        m_row = row;
        m_column = 0;
        m_cells = {};
    }

    void BeginCell(const char** attributes) {
        const std::string_view reference = AttributeOf(attributes, "r");
        const std::int64_t column = reference.empty() ? m_column + 1 : ColumnOf(reference);
        if (column <= m_column || m_row == 0) {
            Refuse();
        }
        m_column = column;
        if (column <= GpsColumns) {
            m_type = AttributeOf(attributes, "t");
            m_style = AttributeOf(attributes, "s");
            m_raw.clear();
            m_text.Clear();
        }
    }

    void EndCell() {
        if (m_column > GpsColumns || m_column < 1) {
            return;
        }
        GpsCell& cell = m_cells[static_cast<std::size_t>(m_column - 1)];
        cell.HasValue = !m_raw.empty() || !m_text.Get().empty();
        if (m_type == "inlineStr") {
            cell.Text = PlainText(m_text.Get());
        } else if (m_type == "str") {
            cell.Text = PlainText(m_raw);
        } else if (m_type == "s") {
            cell.Text = m_raw.empty() ? std::string() : m_texts.At(ParseWholeInt(m_raw).value_or(-1));
        } else if ((m_type.empty() || m_type == "n") && !m_raw.empty() && m_styles.IsPlain(m_style)) {
            cell.Text = FormatNumber(ParseDouble(m_raw), 12);
        }
    }

    const CSharedTexts& m_texts;
    const CNumberStyles& m_styles;
    CGpsRows& m_rows;
    std::int64_t m_row = 0;
    std::int64_t m_column = 0;
    GpsRow m_cells;
    std::string m_type;
    std::string m_style;
    std::string m_raw;     // of the value
    CTextGatherer m_text;  // of a text in the cell itself
    bool m_value = false;
};

}  // namespace

void ReadXlsxSheet(std::string_view bytes, CGpsRows& rows) {
    const CZipReader archive(bytes);
    const std::string workbook = RelationsOf(archive, {}).Find("officeDocument");
    if (workbook.empty()) {
        throw CSheetError(SheetFault::NoWorkbook);
    }
    CWorkbookReader list;
    StreamXml(archive, workbook, MostSmallBytes, list);
    const CRelationReader relations = RelationsOf(archive, workbook);
    std::string sheet;
    for (const std::string& id : list.Sheets) {
        const auto found = relations.ById.find(id);
        if (sheet.empty() && found != relations.ById.end() && found->second.Type == "worksheet") {
            sheet = found->second.Target;
        }
    }
    if (sheet.empty()) {
        throw CSheetError(SheetFault::NoWorkbook);
    }
    CSharedTexts texts;
    if (const std::string part = relations.Find("sharedStrings"); archive.Has(part)) {
        StreamXml(archive, part, MostSheetBytes, texts);
    }
    CNumberStyles styles;
    if (const std::string part = relations.Find("styles"); archive.Has(part)) {
        StreamXml(archive, part, MostSmallBytes, styles);
    }
    CSheetReader reader(texts, styles, rows);
    StreamXml(archive, sheet, MostSheetBytes, reader);
}
