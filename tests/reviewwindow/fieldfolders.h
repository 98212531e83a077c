// Folders as a field unit leaves them.
#pragma once

#include <string>
#include <vector>

struct FieldItem {
    std::string Code = "PL";
    int Level = 2;
    double Distance = 3.5;
};

struct FieldSection {
    std::string Start;
    std::string End;
    std::string Tester = "陆听禾";
    std::string Video = "v.avi";
    std::vector<FieldItem> Items;
};

// With the pictures "0.jpg" on.
std::string FieldDescription(const FieldSection& section);
