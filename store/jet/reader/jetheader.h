// The first page of a file, looked at before the library sees any of it: the library checks two bytes of it
// and never the password.
#pragma once

#include <cstdint>
#include <string>

struct JetHeader {
    std::string Password;     // UTF-8; empty if there is none
    std::uint64_t Pages = 0;  // of JetPageSize bytes
};

constexpr std::size_t JetPageSize = 4096;

// Throws CDamage.
JetHeader ReadJetHeader(int descriptor);
