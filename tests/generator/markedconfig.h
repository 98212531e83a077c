// A data file in which every value is told from every other, so that a document shows which of them reached
// it.
#pragma once

#include <string>
#include <utility>
#include <vector>

struct MarkedConfig {
    std::string Xml;  // UTF-8
    // Values that a reader wants, and where in the file they stand.
    std::vector<std::pair<std::string, std::string>> Expected;
    std::string FirstManholeSum;
};

// Three sections; one record has both pictures, another one that is lost.
MarkedConfig MakeMarkedConfig(const std::string& picture1, const std::string& picture2);
