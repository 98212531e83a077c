// The rows that "--where" asks for.
#pragma once

#include "bulk/CQueryRows.h"

class CArguments;
class CDbRec;

// All rows, and those that the option's query hits; all of them without it. Throws CUsageError for what can't
// be understood, and if the project can't be read.
CQueryRows::Hits ChosenRows(CDbRec& database, const CArguments& arguments, CQueryRows& rows);
