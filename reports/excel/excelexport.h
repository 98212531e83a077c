// The inspection table as an Excel workbook, for whoever works on in a spreadsheet.
#pragma once

#include <string>

class CDbRec;

// Replaces the file. False if it can't be made; the message was shown.
bool WriteInspectionTable(CDbRec& database, const std::string& path);
// Into the operator's documents, under the project's name. Its path text; empty if it can't be made, and the
// message was shown.
std::string ExportInspectionTable(CDbRec& database);
// With the desktop's program for it; where there is none, a message tells where the table lies.
void OpenInspectionTable(const std::string& path);
