// Tests on files of the older engine. These lie outside the repository: in the folder that
// DROVANE_JET_FIXTURES names, or in ../shared/fixtures/jet from the source folder. Without them such a test
// is skipped.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/CTestFolder.h"

std::filesystem::path JetFixtures();  // empty if they aren't there

class CJetTest : public testing::Test {
protected:
    void SetUp() override;
    // Puts a copy into the program folder; returns its path text.
    std::string Take(const std::string& fixture, const std::string& as = "db/p.mdb") const;
    static std::string Bytes(const std::string& fixture);
    // Names in the folder that aren't folders, sorted.
    std::vector<std::string> Files(const std::string& folder = "db") const;

    CTestFolder m_folder;
};
