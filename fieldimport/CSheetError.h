// A workbook that can't be read. Its text is the reason, from the language table.
#pragma once

#include <stdexcept>

#include "shell/language.h"

enum class SheetFault {
    NoFile = 3321,
    NoWorkbook = 3322,
    Protected = 3323,
    Damaged = 3324,
    TooLarge = 3325,
};

class CSheetError : public std::runtime_error {
public:
    explicit CSheetError(SheetFault fault) : std::runtime_error(LoadMessage(static_cast<int>(fault))) {}
};
