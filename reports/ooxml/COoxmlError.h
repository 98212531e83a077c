// The one exception of this room: a template that can't be used, or a document that can't be made. Its text
// is shown to operators behind a message of the operation that failed, so it comes from the language table.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "shell/language.h"

// What went wrong, as the number of its text.
enum class OoxmlFault {
    NoBookmark = 3206,   // its name
    NoRow = 3207,        // the table's name and the row
    NoCell = 3208,       // the table's name, the row and the cell
    NoPlainText = 3209,  // the bookmark's name
    NoTable = 3210,      // the bookmark's name
    NoChart = 3211,      // the number of values
    NotRead = 3212,      // the file
    NotWritten = 3213,   // the file
    NoDocument = 3214,
    DamagedPart = 3215,  // its name
    TooLarge = 3216,
    NoArchive = 3217,
};

class COoxmlError : public std::runtime_error {
public:
    explicit COoxmlError(OoxmlFault fault, const std::vector<std::string>& values = {})
        : std::runtime_error(FillText(LoadMessage(static_cast<int>(fault)), values)), m_fault(fault) {}
    OoxmlFault Fault() const { return m_fault; }

private:
    OoxmlFault m_fault;
};
