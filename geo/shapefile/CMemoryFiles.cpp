#include "geo/shapefile/CMemoryFiles.h"

#include <cstdio>
#include <cstring>

namespace {

// The library's hooks get nothing that could tell them whose files are meant.
thread_local CMemoryFiles* g_current = nullptr;

}  // namespace

struct CMemoryFiles::OpenFile {
    std::string* Bytes;
    std::size_t At = 0;

    static OpenFile& Of(SAFile file) { return *reinterpret_cast<OpenFile*>(file); }
};

CMemoryFiles::CMemoryFiles() : m_former(g_current) {
    SASetupDefaultHooks(&m_hooks);  // for what reads numbers
    m_hooks.FOpen = Open;
    m_hooks.FRead = Read;
    m_hooks.FWrite = Write;
    m_hooks.FSeek = Seek;
    m_hooks.FTell = Tell;
    m_hooks.FFlush = Flush;
    m_hooks.FClose = Close;
    m_hooks.Remove = Remove;
    m_hooks.Error = Error;
    g_current = this;
}

CMemoryFiles::~CMemoryFiles() {
    g_current = m_former;
}

SAFile CMemoryFiles::Open(const char* name, const char* access) {
    const bool creates = access[0] == 'w';
    if (!creates && !g_current->m_files.contains(name)) {
        return nullptr;
    }
    std::string& bytes = g_current->m_files[name];
    if (creates) {
        bytes.clear();
    }
    return reinterpret_cast<SAFile>(new OpenFile{&bytes});
}

SAOffset CMemoryFiles::Read(void* bytes, SAOffset size, SAOffset count, SAFile file) {
    OpenFile& open = OpenFile::Of(file);
    const std::size_t left = open.At < open.Bytes->size() ? open.Bytes->size() - open.At : 0;
    const SAOffset whole = size == 0 ? 0 : std::min<SAOffset>(count, left / size);
    std::memcpy(bytes, open.Bytes->data() + (whole > 0 ? open.At : 0), whole * size);
    open.At += whole * size;
    return whole;
}

SAOffset CMemoryFiles::Write(void* bytes, SAOffset size, SAOffset count, SAFile file) {
    OpenFile& open = OpenFile::Of(file);
    if (const std::size_t end = open.At + size * count; end > open.Bytes->size()) {
        open.Bytes->resize(end);
    }
    std::memcpy(open.Bytes->data() + open.At, bytes, size * count);
    open.At += size * count;
    return count;
}

SAOffset CMemoryFiles::Seek(SAFile file, SAOffset offset, int whence) {
    OpenFile& open = OpenFile::Of(file);
    const std::size_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? open.At : open.Bytes->size();
    open.At = from + offset;
    return 0;
}

SAOffset CMemoryFiles::Tell(SAFile file) {
    return OpenFile::Of(file).At;
}

int CMemoryFiles::Flush(SAFile) {
    return 0;
}

int CMemoryFiles::Close(SAFile file) {
    delete &OpenFile::Of(file);
    return 0;
}

int CMemoryFiles::Remove(const char* name) {
    return g_current->m_files.erase(name) > 0 ? 0 : -1;
}

// What goes wrong comes back from the call, too; the library would print it.
void CMemoryFiles::Error(const char*) {}
