#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "shell/textcodec.h"

namespace {

std::string Times(int count, std::string_view text) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(TextCodec, EveryCharacterOfTheCodePageComesBack) {
    int mapped = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead) {
        for (int trail = 0x40; trail <= 0xFE; ++trail) {
            const std::string gbk = {static_cast<char>(lead), static_cast<char>(trail)};
            const std::string text = Utf8FromGbk(gbk);
            ASSERT_TRUE(IsValidUtf8(text)) << lead << " " << trail;
            if (text.find('?') == std::string::npos) {
                ++mapped;
                ASSERT_EQ(GbkFromUtf8(text), gbk);
            }
        }
    }
    EXPECT_GE(mapped, 21791);  // as many as code page 936 assigns
    EXPECT_EQ(GbkFromUtf8("管段A€"),
              "\xB9\xDC\xB6\xCE"
              "A\x80");
    EXPECT_EQ(Utf8FromGbk("\x80\xB9\xDC\x80"), "€管€");
    // Longer than any buffer on the way.
    const std::string lengthy = Times(5000, "a管") + "😀€" + Times(5000, "段");
    EXPECT_EQ(ThroughGbk(lengthy), Times(5000, "a管") + "?€" + Times(5000, "段"));
    EXPECT_EQ(GbkLength(lengthy), 25002U);
}

TEST(TextCodec, WhatIsNoCharacterBecomesAQuestionMark) {
    EXPECT_EQ(GbkFromUtf8("x😀ñ한y"), "x???y");
    EXPECT_EQ(GbkFromUtf8("a\xFF"
                          "b\xE7\xAE"),
              "a?b??");
    EXPECT_EQ(GbkFromUtf8("管\xED\xA0\x80"), "\xB9\xDC???");  // a surrogate
    EXPECT_EQ(Utf8FromGbk("a\xFF"
                          "b\x81 c"),
              "a?b? c");
    EXPECT_EQ(Utf8FromGbk(std::string("a\0\xB9\xDC", 4)), std::string("a\0管", 5));
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));
    EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));
}

}  // namespace
