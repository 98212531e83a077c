// What is in a converted database, read with the engine alone.
#pragma once

#include <filesystem>
#include <string>

// Fails the test unless every value of every table that the fixtures tell of is in the converted database.
void ExpectContent(const std::filesystem::path& database, const std::string& fixture);
// One value of a database, as a text; "NULL" for none.
std::string Query(const std::filesystem::path& database, const std::string& statement);
