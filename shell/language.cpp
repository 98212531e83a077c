#include "shell/language.h"

#include <algorithm>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t FirstSize = 200;
constexpr int HighestNumber = 10000;
constexpr std::size_t MaxFileSize = 16u << 20;

LanguageTable& Table() {
    static LanguageTable table;
    return table;
}

void StoreLine(std::string line, LanguageTable& table) {
    std::replace(line.begin(), line.end(), '\t', ' ');
    const std::string_view text = TrimBlanks(line);
    const std::size_t blank = text.find(' ');
    if (text.empty() || blank == std::string_view::npos) {
        return;
    }
    const int number = ParseInt(text.substr(0, blank));
    if (number > HighestNumber || number < 0) {
        return;
    }
    const auto index = static_cast<std::size_t>(number);
    table.resize(index + 1);  // both ways: numbers must rise through the file
    table[index] = Utf8FromGbk(TrimBlanks(text.substr(blank)));
}

}  // namespace

std::string LoadMessage(int number) {
    if (Table().empty()) {
        LoadLanguageTable();
    }
    const auto index = static_cast<std::size_t>(number);
    return number < 0 || index >= Table().size() ? std::string() : Table()[index];
}

void LoadLanguageTable() {
    Table().clear();
    ParseLanguageFile(GetLanguageName(), Table());
}

bool HasLanguageTable() {
    return !Table().empty();
}

void ParseLanguageFile(std::string_view name, LanguageTable& table) {
    table.assign(FirstSize, std::string());
    const std::optional<std::string> bytes =
        HostFiles().ReadFile(GetLanguageFolder() + std::string(name) + ".lgu", MaxFileSize);
    if (!bytes) {
        return;
    }
    for (std::size_t at = 0; at < bytes->size();) {
        const std::size_t end = std::min(bytes->find('\n', at), bytes->size());
        std::string line = bytes->substr(at, end - at);
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        StoreLine(std::move(line), table);
        at = end + 1;
    }
}

void EnumLanguages(std::vector<std::string>& list) {
    for (const std::string& name : HostFiles().ListFiles(GetLanguageFolder(), ".lgu")) {
        list.push_back(GetFileTitle(name));
    }
}

std::string FillText(std::string_view text, const std::vector<std::string>& values) {
    std::string filled;
    auto value = values.begin();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool placeholder =
            text[i] == '%' && i + 1 < text.size() && (text[i + 1] == 's' || text[i + 1] == 'd');
        if (placeholder && value != values.end()) {
            filled += *value++;
            ++i;
        } else {
            filled += text[i];
        }
    }
    return filled;
}
