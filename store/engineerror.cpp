#include "store/engineerror.h"

#include <sqlcipher/sqlite3.h>

CDbError EngineError(sqlite3* connection) {
    using Why = CDbError::Why;
    const std::string text = sqlite3_errmsg(connection);
    switch (sqlite3_errcode(connection)) {
        case SQLITE_READONLY:
            return CDbError(text, Why::ReadOnly);
        case SQLITE_FULL:
            return CDbError(text, Why::DiskFull);
        case SQLITE_IOERR:
            return CDbError(text, Why::DiskFailed);
        default:
            return CDbError(text);
    }
}
