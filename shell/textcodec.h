// Text inside the program is UTF-8. Files, wire blocks and lengths that are defined in the ANSI code
// page of the field's machines (936, GBK) cross the border here and nowhere else.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What code page 936 lacks becomes "?".
std::string GbkFromUtf8(std::string_view utf8);
// Bytes that are no character become "?"; half a character at the end is dropped.
std::string Utf8FromGbk(std::string_view gbk);
// The text as it looks after a trip through the code page.
std::string ThroughGbk(std::string_view utf8);

// Bytes of the UTF-8 character at the beginning; 0 if there is none.
std::size_t Utf8CharLength(std::string_view text);
bool IsValidUtf8(std::string_view text);

// Every count of characters in a rule of the system counts bytes of the code page.
std::size_t GbkLength(std::string_view utf8);
// At most `bytes` bytes of the code page; half a character at the cut is dropped.
std::string GbkPrefix(std::string_view utf8, std::size_t bytes);
// The text from byte `start` of the code page on.
std::string GbkSuffix(std::string_view utf8, std::size_t start);

// Lower case by character, for all letters. The same folding serves paths, codes and database text.
std::string LowerCase(std::string_view utf8);
bool EqualNoCase(std::string_view a, std::string_view b);
// Below, equal or above 0. Texts that differ in case only are equal.
int CompareNoCase(std::string_view a, std::string_view b);
// The order in which texts are sorted: exact, by the bytes of the code page.
int CompareGbk(std::string_view a, std::string_view b);

std::string_view TrimBlanks(std::string_view text);  // blanks and tabs, on both sides
