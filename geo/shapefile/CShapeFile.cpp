#include "geo/shapefile/CShapeFile.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "geo/shapefile/CMemoryFiles.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/failures.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"

namespace {

// The names of the files in memory.
constexpr const char* Shp = "m.shp";
constexpr const char* Shx = "m.shx";
constexpr const char* Dbf = "m.dbf";
// What the library writes into a table when nobody tells a code page.
constexpr const char* DefaultCodePage = "LDID/87";
constexpr std::string_view CodePage = "936";
constexpr std::size_t CodeWidth = 10;  // bytes

bool Fail(int message, std::string_view reason = {}) {
    ShowMessage(message, reason);
    return false;
}

template <class Handle, void (*Close)(Handle)>
struct Closer {
    void operator()(std::remove_pointer_t<Handle>* handle) const { Close(handle); }
};
using Shapes = std::unique_ptr<std::remove_pointer_t<SHPHandle>, Closer<SHPHandle, SHPClose>>;
using Shape = std::unique_ptr<SHPObject, Closer<SHPObject*, SHPDestroyObject>>;
using Table = std::unique_ptr<std::remove_pointer_t<DBFHandle>, Closer<DBFHandle, DBFClose>>;

struct Part {
    const char* Extension;
    std::string_view Bytes;
    int Failure;
};

bool WriteParts(const std::string& path, const std::vector<Part>& parts) {
    const std::string stem = path.substr(0, path.size() - 4);
    std::vector<CHostFiles::FileContent> files{{path, parts[0].Bytes}};
    bool older = HostFiles().Exists(path);
    for (std::size_t i = 1; i < parts.size(); ++i) {
        files.push_back({stem + parts[i].Extension, parts[i].Bytes});
        older = older || HostFiles().Exists(files.back().Path);
    }
    std::size_t written = 0;
    if (older) {
        written = HostFiles().WriteFiles(files);
    } else {
        while (written < files.size() && HostFiles().WriteFile(files[written].Path, files[written].Bytes)) {
            ++written;
        }
    }
    return written == files.size() ||
           Fail(parts[written].Failure, "\r\n" + HostFiles().HostPath(files[written].Path) + "\r\n" +
                                            FailureText(HostFiles().LastError()));
}

}  // namespace

void CShapeFile::AddRecords(const CRecDataArray& records) {
    for (const _REC_DATA& record : records) {
        m_records.Add(record);
    }
}

bool CShapeFile::MakeShapes(CMemoryFiles& files) const {
    const Shapes shapes(SHPCreateLL(Shp, SHPT_MULTIPOINT, files.Hooks()));
    if (!shapes) {
        return Fail(2500);
    }
    for (const _REC_DATA& record : m_records) {
        const Shape shape(SHPCreateSimpleObject(SHPT_MULTIPOINT, 1, &record.GpsX, &record.GpsY, nullptr));
        if (!shape) {
            return Fail(2501);
        }
        if (SHPWriteObject(shapes.get(), -1, shape.get()) < 0) {
            return Fail(2502);
        }
    }
    return true;
}

bool CShapeFile::MakeTable(CMemoryFiles& files) const {
    const Table table(DBFCreateLL(Dbf, DefaultCodePage, files.Hooks()));
    if (!table) {
        return Fail(2503);
    }
    if (DBFAddField(table.get(), "DefectCode", FTString, CodeWidth, 0) < 0) {
        return Fail(2504);
    }
    for (int i = 0; i < m_records.GetSize(); ++i) {
        // The library would cut it as well, but tell that as a failure.
        const std::string code = GbkFromUtf8(m_records[i].DefectCode).substr(0, CodeWidth);
        if (DBFWriteStringAttribute(table.get(), i, 0, code.c_str()) == 0) {
            return Fail(2505);
        }
    }
    return true;
}

int CShapeFile::WriteShapeFile(std::string_view path) const {
    CMemoryFiles files;
    if (!MakeShapes(files) || !MakeTable(files)) {
        return 0;
    }
    const bool written = WriteParts(WithExtension(path, ".shp"), {{".shp", files.Bytes(Shp), 2500},
                                                                  {".shx", files.Bytes(Shx), 2500},
                                                                  {".dbf", files.Bytes(Dbf), 2503},
                                                                  {".cpg", CodePage, 2505}});
    return written ? 1 : 0;
}
