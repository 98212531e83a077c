// What the engine said last of a connection, as an error with a reason.
#pragma once

#include "store/CDbError.h"

struct sqlite3;

CDbError EngineError(sqlite3* connection);
