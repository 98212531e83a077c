#include "oldfiles/CJetTransfer.h"

#include <algorithm>
#include <optional>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/schema.h"

namespace {

constexpr const char* TextType = "TEXT COLLATE NOCASE";
constexpr const char* KeyType = "INTEGER PRIMARY KEY";
constexpr const char* CountedKeyType = "INTEGER PRIMARY KEY AUTOINCREMENT";
constexpr std::string_view ManholePrefix = "Jcj";

const SchemaTable* FindKnown(const std::string& table) {
    const auto tables = SchemaTables();
    const auto found =
        std::find_if(tables.begin(), tables.end(), [&](const auto& t) { return EqualNoCase(t.Name, table); });
    return found == tables.end() ? nullptr : &*found;
}

const SchemaColumn* FindKnown(const SchemaTable* table, const std::string& name) {
    if (table == nullptr) {
        return nullptr;
    }
    for (const SchemaColumn& column : table->Columns) {
        if (EqualNoCase(column.Name, name)) {
            return &column;
        }
    }
    return nullptr;
}

bool HasColumn(const JetTable& table, const char* name) {
    return std::any_of(table.Columns.begin(), table.Columns.end(),
                       [&](const JetColumn& column) { return EqualNoCase(column.Name, name); });
}

std::string TypeOf(JetKind kind, bool key) {
    switch (kind) {
        case JetKind::Integer:
            return key ? CountedKeyType : "INTEGER";
        case JetKind::Single:
        case JetKind::Double:
            return {};
        case JetKind::Date:
            return "TEXT";
        case JetKind::Bytes:
            return "BLOB";
        default:
            return TextType;  // decimal numbers too: no other type keeps all their digits
    }
}

bool IsReal(std::string_view declaration) {
    return declaration.empty() || declaration == "DOUBLE" || declaration == "REAL";
}

bool IsKey(const SchemaColumn* rule) {
    return rule != nullptr && std::string_view(rule->Declaration).starts_with(KeyType);
}

}  // namespace

CJetTransfer::CJetTransfer(CDbBase& database, Content content, Hooks hooks)
    : m_database(database), m_content(content), m_hooks(std::move(hooks)) {}

void CJetTransfer::TakeTables(const std::vector<JetTable>& tables) {
    const auto has = [&](const char* name) {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const JetTable& table) { return EqualNoCase(table.Name, name); });
    };
    if (!has("Attrib") || !has("DefectName")) {
        throw CForeign();
    }
    m_hooks.Begin();
    for (const JetTable& table : tables) {
        m_tables.push_back(MakeTable(table));
        m_counts.push_back({table.Name, table.Rows});
        m_total += table.Rows;
    }
}

CJetTransfer::Table CJetTransfer::MakeTable(const JetTable& source) {
    const SchemaTable* known = FindKnown(source.Name);
    const bool isRecord = EqualNoCase(source.Name, "Record");
    const bool onlyCount = m_content == Content::Listing && isRecord;
    Table table;
    table.LastNumber = source.LastNumber;
    std::vector<CTableWriter::Column> columns;
    std::vector<CTableWriter::Column> defaults;
    // One column can be the key: the one that is by our rules, else the one that the file numbers.
    bool hasKey = std::any_of(source.Columns.begin(), source.Columns.end(),
                              [&](const JetColumn& column) { return IsKey(FindKnown(known, column.Name)); });
    for (const JetColumn& column : source.Columns) {
        const SchemaColumn* rule = FindKnown(known, column.Name);
        const bool becomesKey = rule == nullptr && column.Automatic && !hasKey;
        std::string type = rule != nullptr ? rule->Declaration : TypeOf(column.Kind, becomesKey);
        hasKey = hasKey || becomesKey;
        Form form = Form::Same;
        if (becomesKey || IsKey(rule)) {
            form = Form::Key;
            table.Numbered = type == CountedKeyType;
        } else if (IsReal(type)) {
            form = Form::Real;
            type.clear();
        } else if (type.starts_with("TEXT")) {
            form = Form::Text;
        }
        const bool written = !onlyCount || columns.empty();
        table.Columns.push_back(
            {written ? static_cast<int>(columns.size()) : -1, form, column.Kind == JetKind::Single});
        if (written) {
            columns.push_back({column.Name, std::move(type)});
        }
    }
    if (m_content == Content::Listing && !isRecord && !EqualNoCase(source.Name, "Attrib") &&
        !EqualNoCase(source.Name, "DefectName")) {
        return table;
    }
    if (isRecord && m_content == Content::All) {
        // Files from before the manholes came lack their columns.
        for (const SchemaColumn& column : known->Columns) {
            if (std::string_view(column.Name).starts_with(ManholePrefix) && !HasColumn(source, column.Name)) {
                defaults.push_back({column.Name, column.Declaration});
            }
        }
        m_indexRecords = HasColumn(source, "TestingID");
    }
    table.Writer = std::make_unique<CTableWriter>(m_database, source.Name, columns, defaults);
    return table;
}

void CJetTransfer::Set(CTableWriter& writer, const Column& column, const JetValue& value) {
    switch (value.Form) {
        case JetForm::Null:
            if (column.As == Form::Key) {
                throw CUnfittingValue("a row without its key");  // the engine would give it one
            }
            return;
        case JetForm::Integer:
            return column.As == Form::Real ? writer.SetReal(column.Place, static_cast<double>(value.Integer))
                                           : writer.SetInteger(column.Place, value.Integer);
        case JetForm::Real:
            if (column.As != Form::Text) {
                return writer.SetReal(column.Place, value.Real);
            }
            m_texts.push_back(column.Single ? FormatExact(static_cast<float>(value.Real))
                                            : FormatExact(value.Real));
            return writer.SetText(column.Place, m_texts.back());
        case JetForm::Text:
            if (column.As == Form::Real) {
                if (const std::optional<double> number = ParseWholeDouble(value.Text)) {
                    return writer.SetReal(column.Place, *number);
                }
            }
            return writer.SetText(column.Place, value.Text);
        default:
            return writer.SetBytes(column.Place, value.Text);
    }
}

void CJetTransfer::TakeRow(std::size_t index, const std::vector<JetValue>& values) {
    Table& table = m_tables[index];
    ++m_done;
    if (table.Writer == nullptr) {
        return;
    }
    m_texts.clear();
    m_texts.reserve(values.size());  // what was handed over must stay where it is
    try {
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (table.Columns[i].Place >= 0) {
                Set(*table.Writer, table.Columns[i], values[i]);
            }
        }
        table.Writer->Write();
    } catch (const CUnfittingValue& error) {
        throw CJetError(CJetError::Why::Content, error.what());
    }
}

void CJetTransfer::Pulse() {
    m_hooks.Pulse(m_done, m_total);
}

void CJetTransfer::Complete() {
    for (Table& table : m_tables) {
        if (table.Numbered && table.Writer != nullptr) {
            table.Writer->SetLastNumber(table.LastNumber);
        }
        table.Writer.reset();
    }
    if (m_indexRecords) {
        CTableWriter::Run(m_database, RecordIndex);
    }
}
