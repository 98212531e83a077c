#include <gtest/gtest.h>

#include <string>

#include "shell/settings.h"
#include "shell/textcodec.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

class Settings : public testing::Test {
protected:
    CTestFolder m_folder;
};

std::string Block(std::size_t offset, const std::string& bytes, std::size_t size = 4624) {
    std::string block(size, '\0');
    return block.replace(offset, bytes.size(), bytes);
}

TEST_F(Settings, StandAtTheirPlacesInTheFile) {
    SetLanguageName(std::string(300, 'x'));  // leaves nothing behind a shorter one
    SetLanguageName("中A");
    SetGpsPort(0x01020304);
    SetGpsBaud(115200);
    SetWorkFolder("E:/管");
    ASSERT_TRUE(SaveSettings());
    const std::string numbers("\x04\x03\x02\x01\x00\xC2\x01\x00", 8);
    EXPECT_EQ(m_folder.ReadFile("set.dat"), Block(0,
                                                  "\xD6\xD0"
                                                  "A")
                                                .replace(260, 8, numbers)
                                                .replace(268, 5, "E:/\xB9\xDC"));
    SetGpsPort(0);
    ASSERT_TRUE(LoadSettings());
    EXPECT_EQ(GetLanguageName(), "中A");
    EXPECT_EQ(GetGpsPort(), 0x01020304U);
    EXPECT_EQ(GetGpsBaud(), 115200U);
    EXPECT_EQ(GetWorkFolder(), "E:/管\\");

    // The last of 260 bytes is a zero, and half a character before it is dropped when read.
    std::string lengthy = "E";
    for (int i = 0; i < 200; ++i) {
        lengthy += "管";
    }
    SetWorkFolder("a" + lengthy);
    SetLanguageName(lengthy);
    EXPECT_EQ(GetLanguageName(), GbkPrefix(lengthy, 259));
    EXPECT_EQ(GetWorkFolder(), GbkPrefix("a" + lengthy, 258) + "\\");
    EXPECT_EQ(GetGpsPort(), 0x01020304U);
    ASSERT_TRUE(SaveSettings());
    EXPECT_EQ(m_folder.ReadFile("set.dat")[259], '\0');
    EXPECT_EQ(m_folder.ReadFile("set.dat").substr(526), std::string("\xB9", 1) + std::string(4097, '\0'));
}

}  // namespace
