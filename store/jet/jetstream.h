// What the reader process writes and the program reads. Both are built together, so numbers stand in the
// order of the machine's bytes.
//
// The stream is frames: 4 bytes length of what follows, 1 byte tag, the payload.
//
//   Password   text
//   Table      text name, 8 bytes rows, 8 bytes last automatic number, 2 bytes columns, and of each column
//              text name, 1 byte kind, 1 byte whether it is numbered automatically
//   Row        2 bytes table, then a value for each of its columns: 1 byte form, and behind it nothing
//              (Null), 8 bytes (Integer, Real), or a text or bytes
//   Refusal    text for developers, instead of everything to come
//   End        nothing
//
// A text is 4 bytes length and UTF-8. All tables come before the first row.
#pragma once

#include <cstdint>

enum class JetTag : std::uint8_t { Password = 'P', Table = 'T', Row = 'R', Refusal = 'X', End = 'E' };

enum class JetKind : std::uint8_t { Integer, Single, Double, Decimal, Date, Text, Bytes, Count };

enum class JetForm : std::uint8_t { Null, Integer, Real, Text, Bytes, Count };

// Exit codes of the reader process.
constexpr int JetExitRefused = 3;   // a Refusal was sent
constexpr int JetExitNoMemory = 4;  // its limit was reached
constexpr int JetExitNoOutput = 5;  // nobody reads
