// What of a project is on the map.
#pragma once

#include <string>
#include <vector>

#include "store/records/records.h"

class CDbRec;

struct MapContent {
    // In the order of the list: marker n stands for record n.
    CRecDataArray Records;
    CTestingDataArray Sections;  // in the project's order
};

// The records of the project, or of one section from 0 on, that lie in the chosen sections. False with the
// message of what can't be read.
bool ReadMapContent(CDbRec& database, std::int32_t section, const CArrID& chosen, MapContent& content);

// AddMarker for each record, then Line for each section.
std::vector<std::string> MapCalls(const MapContent& content);
// Of the record at that place.
std::string BubbleOf(const CDbRec& database, const MapContent& content, int row);
