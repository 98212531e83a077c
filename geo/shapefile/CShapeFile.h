// Defects as a shapefile, for geographic information systems: a point each, with its code.
#pragma once

#include <string>
#include <string_view>

#include "store/records/records.h"

class CMemoryFiles;

class CShapeFile {
public:
    virtual ~CShapeFile() = default;

    // Copies of them, behind those that are there.
    void AddRecords(const CRecDataArray& records);

    // 1 on success, else 0 with a message shown: 2500 .shp or .shx, 2501 and 2502 a shape, 2503 the table,
    // 2504 its field, 2505 a row of it. ".shp" is appended to the path text unless it ends so.
    //
    // X.shp and X.shx hold one multipoint of one vertex a record, longitude and latitude in degrees as they
    // are, also 0, 0 for no position. X.dbf has the field DefectCode, 10 bytes of code page 936; what is
    // longer is cut. X.cpg names the code page. Files of an older set are replaced all at once; without such,
    // what is complete before a failure stays.
    int WriteShapeFile(std::string_view path) const;

private:
    bool MakeShapes(CMemoryFiles& files) const;
    bool MakeTable(CMemoryFiles& files) const;

    CRecDataArray m_records;
};
