#include "tests/support/CJetTest.h"

#include <algorithm>
#include <cstdlib>

namespace fs = std::filesystem;

fs::path JetFixtures() {
    const char* named = std::getenv("DROVANE_JET_FIXTURES");
    const fs::path folder =
        named != nullptr ? fs::path(named) : fs::path(DROVANE_SOURCE_FOLDER) / "../shared/fixtures/jet";
    return fs::exists(folder / "project.mdb") ? folder : fs::path();
}

void CJetTest::SetUp() {
    if (JetFixtures().empty()) {
        GTEST_SKIP() << "no files of the older engine: set DROVANE_JET_FIXTURES to their folder";
    }
}

std::string CJetTest::Take(const std::string& fixture, const std::string& as) const {
    return m_folder.WriteFile(as, Bytes(fixture));
}

std::string CJetTest::Bytes(const std::string& fixture) {
    return ReadHostFile(JetFixtures() / fixture);
}

std::vector<std::string> CJetTest::Files(const std::string& folder) const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.Host(folder))) {
        if (entry.is_regular_file()) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}
