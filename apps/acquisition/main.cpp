#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/acquisition/playfolder.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/programfolder.h"
#include "shell/seams.h"

namespace {

constexpr const char* Usage =
    "usage: drovane-acquire FOLDER [--records N] [--interval MS] [--die-after N] [--short N] [--burst N]\n"
    "                       [--full-texts] [--senders N] [--json]\n\n"
    "Plays the folder of an inspected section to the running \"drovane -add\", as an acquisition program "
    "does,\n"
    "and prints what becomes of each record.\n";

PlayOptions ReadOptions(const std::vector<std::string>& words) {
    PlayOptions options;
    const std::map<std::string, int*> numbers = {
        {"--records", &options.Records},    {"--interval", &options.Interval},
        {"--die-after", &options.DieAfter}, {"--short", &options.Short},
        {"--burst", &options.Burst},        {"--senders", &options.Senders}};
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto number = numbers.find(words[i]);
        if (number != numbers.end()) {
            const std::optional<std::int64_t> value =
                i + 1 < words.size() ? ParseWholeInt(words[++i]) : std::nullopt;
            constexpr std::int64_t Most = 1'000'000;
            if (!value || *value < 0 || *value > Most) {
                throw std::invalid_argument(number->first + " needs a number");
            }
            *number->second = static_cast<int>(*value);
        } else if (words[i] == "--full-texts") {
            options.FullTexts = true;
        } else if (words[i] == "--json") {
            options.Json = true;
        } else if (words[i].starts_with("--") || !options.Folder.empty()) {
            throw std::invalid_argument(words[i] + " isn't known");
        } else {
            const std::filesystem::path folder = std::filesystem::absolute(words[i]).lexically_normal();
            options.Folder = CHostFiles::PathText(folder.string()).value_or(std::string());
            if (options.Folder.ends_with('\\')) {
                options.Folder.pop_back();
            }
        }
    }
    if (options.Folder.empty()) {
        throw std::invalid_argument("a folder is missing");
    }
    return options;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        CHostFiles files(ExecutableFolder());
        const CSeamScope seams({.Files = &files});
        return PlayFolder(ReadOptions({argv + 1, argv + argc}));
    } catch (const std::invalid_argument& error) {
        std::cerr << "drovane-acquire: " << error.what() << "\n" << Usage;
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "drovane-acquire: " << error.what() << '\n';
        return 1;
    }
}
