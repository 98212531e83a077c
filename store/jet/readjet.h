// Reads a file of the older engine (Jet 4, the `.mdb` of the years 2000 to 2003) as a whole. The work is done
// by a process of its own, `drovane-jetreader`, that may use so much memory and time and not more; what it
// sends is checked again here. A damaged file is refused, never read in part.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/CUnixFile.h"
#include "store/jet/CJetError.h"
#include "store/jet/jetstream.h"

struct JetColumn {
    std::string Name;
    JetKind Kind = JetKind::Text;
    bool Automatic = false;  // numbered by the engine
};

struct JetTable {
    std::string Name;
    std::int64_t Rows = 0;
    std::int64_t LastNumber = 0;  // the highest automatic one ever given
    std::vector<JetColumn> Columns;
};

// Dates come as texts "YYYY-MM-DD HH:MM:SS" (as numbers if they are beyond the calendar), money and decimal
// numbers as texts with all their digits, truth values as 0 and 1.
struct JetValue {
    JetForm Form = JetForm::Null;
    std::int64_t Integer = 0;
    double Real = 0;
    std::string_view Text;  // or bytes; lives until the next row
};

// What a file is read into.
class CJetReceiver {
public:
    virtual ~CJetReceiver() = default;
    // Once, before all rows.
    virtual void TakeTables(const std::vector<JetTable>& tables) = 0;
    // In the order of the tables and of the file.
    virtual void TakeRow(std::size_t table, const std::vector<JetValue>& values) = 0;
    // Several times a second.
    virtual void Pulse() {}
};

struct JetLimits {
    std::uint64_t Memory = 512U << 20;  // bytes
    std::chrono::milliseconds Processor{};
    std::chrono::milliseconds Wall{};  // that we wait for it

    // A multiple of what a file of this size takes on a slow machine.
    static JetLimits ForSize(std::uint64_t bytes);
};

// `file` is open for reading. Its own password must be `password` or none. Throws CJetError, and lets pass
// what the receiver throws.
void ReadJet(const CUnixFile& file, std::string_view password, CJetReceiver& receiver);
void ReadJet(const CUnixFile& file, std::string_view password, CJetReceiver& receiver,
             const JetLimits& limits);
