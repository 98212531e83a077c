#include "bulk/CQueryRows.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <type_traits>
#include <unordered_map>
#include <variant>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/records/fields.h"
#include "store/recordtexts.h"

namespace {

constexpr int Decimals = 3;  // of stored distances, whose 32-bit floats say 12.3999996 for 12.4

template <class Record>
std::string ValueOf(const Record& record, std::span<const FieldOf<Record>> fields,
                    const std::string& column) {
    for (const FieldOf<Record>& field : fields) {
        if (column == field.Name) {
            return std::visit(
                [&record](auto member) -> std::string {
                    const auto& value = record.*member;
                    using Value = std::remove_cvref_t<decltype(value)>;
                    if constexpr (std::is_same_v<Value, std::string>) {
                        return value;
                    } else if constexpr (std::is_same_v<Value, float>) {
                        return FormatNumber(RoundTo(static_cast<double>(value), Decimals), Decimals);
                    } else if constexpr (std::is_floating_point_v<Value>) {
                        return FormatNumber(value, 12);
                    } else {
                        return FormatInt(value);
                    }
                },
                field.Member);
        }
    }
    return {};
}

int Compare(const std::string& value, const std::string& wanted) {
    const std::optional<double> number = ParseWholeDouble(value);
    const std::optional<double> wantedNumber = ParseWholeDouble(wanted);
    if (number && wantedNumber) {
        return *number < *wantedNumber ? -1 : *number > *wantedNumber ? 1 : 0;
    }
    return value.compare(wanted);
}

bool HoldsValue(const QueryTerm& term, const std::string& text) {
    using Op = QueryTerm::Op;
    const std::string value = LowerCase(TrimBlanks(text));
    switch (term.How) {
        case Op::Contains:
            return term.Column == "DefectCode" ? value.starts_with(term.Value)
                                               : value.find(term.Value) != std::string::npos;
        case Op::Equal:
            return Compare(value, term.Value) == 0;
        case Op::NotEqual:
            return Compare(value, term.Value) != 0;
        default:
            break;
    }
    // What is asked for is a number: what isn't one is neither less nor more.
    if (ParseWholeDouble(term.Value) && !ParseWholeDouble(value)) {
        return false;
    }
    const int order = Compare(value, term.Value);
    switch (term.How) {
        case Op::Less:
            return order < 0 && !value.empty();
        case Op::LessEqual:
            return order <= 0 && !value.empty();
        case Op::Greater:
            return order > 0;
        default:
            return order >= 0;
    }
}

std::string SectionText(const _TESTING_DATA& section) {
    std::string text = section.Label();
    for (const FieldOf<_TESTING_DATA>& field : TestingFields()) {
        if (const auto* member = std::get_if<std::string _TESTING_DATA::*>(&field.Member)) {
            text += '\n' + section.*(*member);
        }
    }
    return LowerCase(text);
}

std::string RecordText(const CDbRec& database, const _REC_DATA& record) {
    return LowerCase(record.DefectCode + '\n' + std::string(DefectName(database, record.DefectCode)) + '\n' +
                     record.Comment + '\n' + record.JcjNo + '\n' + record.GetPicture1() + '\n' +
                     record.GetPicture2());
}

}  // namespace

std::string FieldText(const _TESTING_DATA& section, const std::string& column) {
    return ValueOf(section, TestingFields(), column);
}

bool CQueryRows::Read(CDbRec& database) {
    m_sections.clear();
    m_records.clear();
    m_sectionRows.clear();
    m_recordTexts.clear();
    m_knowsFindings = false;
    CTestingDataArray sections;
    CRecDataArray records;
    if (!database.ReadTestings(sections) || !database.LookAtRecords(-1, records, false)) {
        return false;
    }
    m_sections.assign(std::make_move_iterator(sections.begin()), std::make_move_iterator(sections.end()));
    m_records.assign(std::make_move_iterator(records.begin()), std::make_move_iterator(records.end()));
    std::unordered_map<std::int32_t, std::size_t> placeOf;
    m_sectionRows.resize(m_sections.size());
    for (std::size_t i = 0; i < m_sections.size(); ++i) {
        m_sectionRows[i].Text = SectionText(m_sections[i]);
        placeOf.emplace(m_sections[i].ID, i);
    }
    m_recordTexts.reserve(m_records.size());
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        m_recordTexts.push_back(RecordText(database, m_records[i]));
        if (const auto place = placeOf.find(m_records[i].TestingID); place != placeOf.end()) {
            m_sectionRows[place->second].Records.push_back(i);
        }
    }
    return true;
}

// What takes time is looked for when it is first asked for.
void CQueryRows::Prepare(const Query& query) {
    if (query.Asks(QueryTerm::Kind::NoVideo)) {
        const CHostFiles::CLookOnce look(HostFiles());
        for (std::size_t i = 0; i < m_sections.size(); ++i) {
            if (m_sectionRows[i].VideoThere < 0) {
                const std::string video = m_sections[i].FirstVideo();
                m_sectionRows[i].VideoThere = !video.empty() && HostFiles().Exists(video) ? 1 : 0;
            }
        }
    }
    if (query.Asks(QueryTerm::Kind::Finding) && !m_knowsFindings && AskFindings) {
        m_findings = AskFindings();
        m_knowsFindings = true;
    }
}

// Whether a term, not its opposite, holds for a section itself, or for one of its records.
bool CQueryRows::Holds(const QueryTerm& term, std::size_t section, const std::size_t* record) const {
    const SectionRow& row = m_sectionRows[section];
    const _REC_DATA* data = record == nullptr ? nullptr : &m_records[*record];
    switch (term.What) {
        case QueryTerm::Kind::Text:
            return row.Text.find(term.Value) != std::string::npos ||
                   (record != nullptr && m_recordTexts[*record].find(term.Value) != std::string::npos);
        case QueryTerm::Kind::NoVideo:
            return row.VideoThere == 0;
        case QueryTerm::Kind::NoPicture:
            return data != nullptr && data->Pictures.IsEmpty() && !data->IsPipeNormal();
        case QueryTerm::Kind::NoRecords:
            return row.Records.empty();
        case QueryTerm::Kind::Finding:
            return data == nullptr ? m_findings.Sections.contains(m_sections[section].ID)
                                   : m_findings.Records.contains(data->ID);
        case QueryTerm::Kind::Field:
            break;
    }
    if (term.OfRecord) {
        if (data == nullptr) {
            return false;
        }
        if (term.Column == "Picture") {
            return HoldsValue(term, data->GetPicture1()) || HoldsValue(term, data->GetPicture2());
        }
        return HoldsValue(term, ValueOf(*data, RecordFields(), term.Column));
    }
    const _TESTING_DATA& values = m_sections[section];
    if (term.Column == "Well") {
        return HoldsValue(term, values.StartWell) || HoldsValue(term, values.EndWell);
    }
    if (term.Column == "Records") {
        return HoldsValue(term, FormatInt(static_cast<std::int64_t>(row.Records.size())));
    }
    return HoldsValue(term, ValueOf(values, TestingFields(), term.Column));
}

bool CQueryRows::HoldsAll(const Query& query, std::size_t section, const std::size_t* record) const {
    return std::all_of(query.Terms.begin(), query.Terms.end(),
                       [&](const QueryTerm& term) { return term.Negated || Holds(term, section, record); });
}

// A section with a record for which the opposite holds isn't without it.
bool CQueryRows::IsExcluded(const Query& query, std::size_t section) const {
    const std::vector<std::size_t>& records = m_sectionRows[section].Records;
    return std::any_of(query.Terms.begin(), query.Terms.end(), [&](const QueryTerm& term) {
        return term.Negated && (Holds(term, section, nullptr) ||
                                std::any_of(records.begin(), records.end(), [&](const std::size_t& record) {
                                    return Holds(term, section, &record);
                                }));
    });
}

CQueryRows::Hits CQueryRows::Find(const Query& query) {
    Prepare(query);
    Hits hits;
    for (std::size_t section = 0; section < m_sections.size(); ++section) {
        bool hit = HoldsAll(query, section, nullptr);
        for (const std::size_t& record : m_sectionRows[section].Records) {
            if (!HoldsAll(query, section, &record)) {
                continue;
            }
            hit = true;
            const bool excluded = std::any_of(
                query.Terms.begin(), query.Terms.end(),
                [&](const QueryTerm& term) { return term.Negated && Holds(term, section, &record); });
            if (!excluded) {
                hits.Records.push_back(m_records[record].ID);
            }
        }
        if (hit && !IsExcluded(query, section)) {
            hits.Sections.push_back(m_sections[section].ID);
        }
    }
    return hits;
}

const _TESTING_DATA* CQueryRows::FindSection(std::int32_t id) const {
    const auto found = std::find_if(m_sections.begin(), m_sections.end(),
                                    [id](const _TESTING_DATA& section) { return section.ID == id; });
    return found == m_sections.end() ? nullptr : &*found;
}

std::vector<CQueryRows::Pair> CQueryRows::All() const {
    std::vector<Pair> pairs;
    pairs.reserve(m_records.size());
    for (std::size_t i = 0; i < m_sections.size(); ++i) {
        for (const std::size_t record : m_sectionRows[i].Records) {
            pairs.push_back({&m_sections[i], &m_records[record]});
        }
    }
    return pairs;
}

const _REC_DATA* CQueryRows::FindRecord(std::int32_t id) const {
    const auto found =
        std::lower_bound(m_records.begin(), m_records.end(), id,
                         [](const _REC_DATA& record, std::int32_t wanted) { return record.ID < wanted; });
    return found == m_records.end() || found->ID != id ? nullptr : &*found;
}
