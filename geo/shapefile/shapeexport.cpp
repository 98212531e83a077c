#include "geo/shapefile/shapeexport.h"

#include "geo/shapefile/CShapeFile.h"
#include "store/CDbRec.h"

bool ExportShapes(CDbRec& database, const CArrID& sections, std::string_view path) {
    CShapeFile file;
    bool all = true;
    for (const std::uint32_t id : sections) {
        CRecDataArray records;
        if (database.ReadRecords(static_cast<std::int32_t>(id), records, false)) {
            file.AddRecords(records);
        } else {
            all = false;
        }
    }
    return file.WriteShapeFile(path) == 1 && all;
}
