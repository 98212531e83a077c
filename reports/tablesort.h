// Sorts the rows of a flat list.
#pragma once

#include <string>
#include <vector>

// Rows of `rowWidth` texts, by columns key1, key2 and, unless it is below 0, key3. Texts compare by the bytes
// of the code page, with the letters A to Z taken as a to z; numeric columns by their number with its zeros
// in front, as text, so that negative numbers come first and the largest of them foremost. Rows with equal
// keys keep their order. What doesn't make a whole row stays at the end.
void TableSort(std::vector<std::string>& list, int rowWidth, int key1, int key2, int key3, bool numeric1,
               bool numeric2, bool numeric3);
