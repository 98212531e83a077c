#include "bulk/query.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "shell/textcodec.h"
#include "store/records/fields.h"

namespace {

constexpr QueryName Names[] = {
    {"name", "TestingName", false},
    {"well", "Well", false},
    {"manhole", "Well", false},
    {"start", "StartWell", false},
    {"end", "EndWell", false},
    {"task", "TaskName", false},
    {"tasknumber", "TaskIndex", false},
    {"direction", "TestingDirection", false},
    {"date", "TestingDate", false},
    {"location", "Location", false},
    {"length", "PipeLength", false},
    {"inspected", "DetectionLength", false},
    {"diameter", "PipeDiameter", false},
    {"material", "PipeMaterial", false},
    {"type", "PipeType", false},
    {"company", "TestingCompany", false},
    {"tester", "Tester", false},
    {"video", "VideoFileList", false},
    {"records", "Records", false},
    {"section", "ID", false},
    {"code", "DefectCode", true},
    {"grade", "DefectLevel", true},
    {"distance", "DistanceStart", true},
    {"clock", "DirectionStart", true},
    {"comment", "Comment", true},
    {"picture", "Picture", true},
    {"record", "ID", true},
    {"名称", "TestingName", false},
    {"井号", "Well", false},
    {"任务", "TaskName", false},
    {"方向", "TestingDirection", false},
    {"日期", "TestingDate", false},
    {"地点", "Location", false},
    {"管长", "PipeLength", false},
    {"管径", "PipeDiameter", false},
    {"材质", "PipeMaterial", false},
    {"类型", "PipeType", false},
    {"单位", "TestingCompany", false},
    {"检测员", "Tester", false},
    {"记录数", "Records", false},
    {"代码", "DefectCode", true},
    {"等级", "DefectLevel", true},
    {"距离", "DistanceStart", true},
    {"备注", "Comment", true},
};

struct Word {
    std::string Text;
    bool Quoted = false;  // it began with a quotation mark
};

// Quotation marks keep blanks together, also behind an operator.
std::vector<Word> SplitWords(std::string_view text) {
    std::vector<Word> words;
    bool inQuotes = false;
    bool begun = false;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\t';
        if (c == '"') {
            if (!begun) {
                words.push_back({{}, true});
                begun = true;
            }
            inQuotes = !inQuotes;
        } else if (blank && !inQuotes) {
            begun = false;
        } else {
            if (!begun) {
                words.emplace_back();
                begun = true;
            }
            words.back().Text += c;
        }
    }
    return words;
}

constexpr std::pair<std::string_view, QueryTerm::Op> Operators[] = {
    {">=", QueryTerm::Op::GreaterEqual}, {"<=", QueryTerm::Op::LessEqual}, {"!=", QueryTerm::Op::NotEqual},
    {">", QueryTerm::Op::Greater},       {"<", QueryTerm::Op::Less},       {"=", QueryTerm::Op::Equal},
    {":", QueryTerm::Op::Contains},
};

// Longer operators come first, so that ">=" isn't ">" with a value "=3".
std::optional<std::pair<std::size_t, std::size_t>> FindOperator(std::string_view word, QueryTerm::Op& op) {
    const std::size_t at = word.find_first_of("<>=!:");
    if (at == std::string_view::npos || at == 0) {
        return std::nullopt;
    }
    for (const auto& [text, which] : Operators) {
        if (word.substr(at).starts_with(text)) {
            op = which;
            return std::pair(at, text.size());
        }
    }
    return std::nullopt;
}

template <class Record>
const char* FindColumn(std::span<const FieldOf<Record>> fields, std::string_view name) {
    const auto found = std::find_if(fields.begin(), fields.end(), [name](const FieldOf<Record>& field) {
        return EqualNoCase(field.Name, name);
    });
    return found == fields.end() ? nullptr : found->Name;
}

bool FindField(std::string_view name, QueryTerm& term) {
    for (const QueryName& known : Names) {
        if (EqualNoCase(known.Name, name)) {
            term.Column = known.Column;
            term.OfRecord = known.OfRecord;
            return true;
        }
    }
    const char* ofSection = FindColumn(TestingFields(), name);
    const char* ofRecord = FindColumn(RecordFields(), name);
    if (ofSection != nullptr || ofRecord != nullptr) {
        term.OfRecord = ofSection == nullptr;
        term.Column = ofSection != nullptr ? ofSection : ofRecord;
        return true;
    }
    return false;
}

std::optional<QueryTerm::Kind> Lack(std::string_view word) {
    if (EqualNoCase(word, "video")) {
        return QueryTerm::Kind::NoVideo;
    }
    if (EqualNoCase(word, "picture") || EqualNoCase(word, "pictures")) {
        return QueryTerm::Kind::NoPicture;
    }
    if (EqualNoCase(word, "records") || EqualNoCase(word, "record")) {
        return QueryTerm::Kind::NoRecords;
    }
    return std::nullopt;
}

// False if it is to be left out.
bool ReadTerm(const Word& word, QueryTerm& term) {
    std::string_view text = word.Text;
    if (word.Quoted) {
        term.Value = LowerCase(text);
        return !text.empty();
    }
    if (text.starts_with('-') && text.size() > 1) {
        term.Negated = true;
        text.remove_prefix(1);
    }
    if (EqualNoCase(text, "finding") || EqualNoCase(text, "findings")) {
        term.What = QueryTerm::Kind::Finding;
        return true;
    }
    QueryTerm::Op op{};
    if (const auto place = FindOperator(text, op)) {
        term.What = QueryTerm::Kind::Field;
        term.How = op;
        term.Value = LowerCase(text.substr(place->first + place->second));
        // "=" asks for what is empty; the others want a value.
        const bool wantsValue = op != QueryTerm::Op::Equal && op != QueryTerm::Op::NotEqual;
        return FindField(text.substr(0, place->first), term) && (!wantsValue || !term.Value.empty());
    }
    term.Value = LowerCase(text);
    return true;
}

}  // namespace

bool Query::Asks(QueryTerm::Kind what) const {
    return std::any_of(Terms.begin(), Terms.end(),
                       [what](const QueryTerm& term) { return term.What == what; });
}

bool Query::IsOfRecords() const {
    return std::any_of(Terms.begin(), Terms.end(), [](const QueryTerm& term) {
        return term.OfRecord || term.What == QueryTerm::Kind::Text ||
               term.What == QueryTerm::Kind::NoPicture || term.What == QueryTerm::Kind::Finding;
    });
}

Query ParseQuery(std::string_view text) {
    Query query;
    const std::vector<Word> words = SplitWords(text);
    for (std::size_t i = 0; i < words.size(); ++i) {
        QueryTerm term;
        const bool negated = words[i].Text == "-no";
        if (!words[i].Quoted && (negated || EqualNoCase(words[i].Text, "no")) && i + 1 < words.size()) {
            if (const auto what = Lack(words[i + 1].Text)) {
                term.What = *what;
                term.Negated = negated;
                query.Terms.push_back(term);
                ++i;
                continue;
            }
        }
        if (ReadTerm(words[i], term)) {
            query.Terms.push_back(std::move(term));
        } else {
            query.Unclear.push_back(words[i].Text);
        }
    }
    return query;
}

std::span<const QueryName> FieldNames() {
    return Names;
}
