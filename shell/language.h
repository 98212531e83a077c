// The table of message texts by number. Every text that the operator sees and that isn't part of a
// window's own design comes from here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Indexed by message number; a hole is an empty text.
using LanguageTable = std::vector<std::string>;

// Puts `values` in place of the text's "%s" and "%d" in turn. Everything else stands as it is: language files
// are open to their users, and no text of theirs may reach a formatting function.
std::string FillText(std::string_view text, const std::vector<std::string>& values);

// Loads the table at the first call. A number without a text gives an empty one.
std::string LoadMessage(int number);
// Empties the table and reads the file of the language in force.
void LoadLanguageTable();
// Whether captions are to be taken from the table. A missing file leaves a table of 200 empty texts,
// so that windows come up with blank captions then: that tells the operator that his installation is
// incomplete, which captions in the program's first language would hide.
bool HasLanguageTable();

// `name` is the title of a file in the Language folder. A file that can't be read leaves 200 empty texts.
void ParseLanguageFile(std::string_view name, LanguageTable& table);
// Titles of all language files, by name.
void EnumLanguages(std::vector<std::string>& list);
