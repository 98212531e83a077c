// Looks at a finished workbook again. The library that writes it doesn't notice a disk that fills up while
// it keeps its parts in temporary files.
#pragma once

#include <string>

// Whether every part of the archive can be read back and is a whole XML document.
bool IsWholeWorkbook(const std::string& bytes);
