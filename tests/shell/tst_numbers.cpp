#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "shell/numbers.h"

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

TEST(Numbers, RoundHalfAwayFromZero) {
    EXPECT_EQ(RoundTo(2.5, 0), 3.0);
    EXPECT_EQ(RoundTo(-0.125, 2), -0.13);
    EXPECT_EQ(RoundTo(1.005, 2), 1.0);                // lies below the half
    EXPECT_EQ(RoundTo(0.49999999999999994, 0), 1.0);  // plus a half it is 1
    EXPECT_EQ(RoundTo(9.0e6, 12), 9.0e6);
    // What doesn't fit comes back as it is.
    EXPECT_EQ(RoundTo(1.25e7, 12), 1.25e7);
    EXPECT_EQ(RoundTo(Infinity, 3), Infinity);
    EXPECT_TRUE(std::isnan(RoundTo(std::nan(""), 3)));
}

TEST(Numbers, AsText) {
    struct Case {
        double Value;
        int Digits;
        const char* Text;
    };
    constexpr Case cases[] = {
        {1200.0, 3, "1200"},   {-0.0001, 3, "0"},       {2.5, 0, "3"},
        {-2.5, 0, "-3"},       {-0.4, 0, "0"},          {12.5, 3, "12.5"},
        {0.0005, 3, "0.001"},  {-0.0005, 3, "-0.001"},  {113.2644350000014, 12, "113.264435000001"},
        {1.5, -1, "1.500000"}, {-0.0, -1, "-0.000000"}, {1e20, 3, "100000000000000000000"}};
    for (const Case& c : cases) {
        EXPECT_EQ(FormatNumber(c.Value, c.Digits), c.Text) << c.Value;
    }
    EXPECT_EQ(FormatNumber(1e300, 12).size(), 301U);
    EXPECT_EQ(FormatOneDecimal(-0.04), "0.0");
    EXPECT_EQ(FormatOneDecimal(12.25) + " " + FormatFixed(12.25, 1), "12.3 12.2");
    EXPECT_EQ(FormatInt(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(Numbers, FromTextAsFarAsItIsANumber) {
    const std::string zeros(400, '0');
    EXPECT_EQ(ParseDouble("12.5m"), 12.5);
    EXPECT_EQ(ParseDouble(" \t\n-3.5e2x"), -350.0);
    EXPECT_EQ(ParseDouble("+1e"), 1.0);
    EXPECT_EQ(ParseDouble("1,5"), 1.0);
    for (const char* none : {"", ".", "-", "e5", "abc", "0x10", "inf", "nan", "+-1", "１２", "- 1"}) {
        EXPECT_EQ(ParseDouble(none), 0.0) << none;
        EXPECT_EQ(ParseInt(none), 0) << none;
    }
    EXPECT_EQ(ParseDouble("1e400"), Infinity);
    EXPECT_EQ(ParseDouble("-1e400"), -Infinity);
    EXPECT_EQ(ParseDouble("1" + zeros + "e-399"), 10.0);
    EXPECT_EQ(ParseDouble("-0." + zeros + "1e10"), 0.0);

    EXPECT_EQ(ParseInt(" 12.9"), 12);
    EXPECT_EQ(ParseInt("2147483648"), 2147483647);
    EXPECT_EQ(ParseInt("-2147483649"), -2147483647 - 1);
    EXPECT_EQ(ParseInt("9" + zeros), 2147483647);
}

TEST(Numbers, WholeTexts) {
    EXPECT_EQ(ParseWholeDouble(" +1.5e1\t"), 15.0);
    for (const char* none : {"", " ", "1.5 x", "1 2", "0x1", "nan", "+-1", "1e"}) {
        EXPECT_EQ(ParseWholeDouble(none), std::nullopt) << none;
    }
    EXPECT_EQ(ParseWholeInt(" -12 "), -12);
    EXPECT_EQ(ParseWholeInt("+9223372036854775807"), 9223372036854775807);
    for (const char* none : {"", "+", "-", "+-5", "++5", "1.0", "12x", "9223372036854775808"}) {
        EXPECT_EQ(ParseWholeInt(none), std::nullopt) << none;
    }
}

}  // namespace
