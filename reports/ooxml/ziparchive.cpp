#include "reports/ooxml/ziparchive.h"

#include <unistd.h>
#include <zip.h>

#include <cerrno>
#include <memory>
#include <unordered_set>

#include "reports/ooxml/COoxmlError.h"
#include "shell/CUnixFile.h"

namespace {

constexpr zip_uint16_t FirstDosDay = 0x21;  // 1 January 1980

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;

bool IsPlainName(std::string_view name) {
    return !name.empty() && name.front() != '/' && name.find('\\') == name.npos &&
           ("/" + std::string(name) + "/").find("/../") == std::string::npos;
}

std::string ReadEntry(zip_t* archive, zip_uint64_t index, const std::string& name, std::size_t size) {
    const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(archive, index, 0));
    if (!entry) {
        throw COoxmlError(OoxmlFault::DamagedPart, {name});
    }
    // One byte more than told, so that the end, where the checksum is compared, is reached.
    std::string bytes(size + 1, '\0');
    std::size_t got = 0;
    for (;;) {
        const zip_int64_t part = zip_fread(entry.get(), bytes.data() + got, bytes.size() - got);
        if (part < 0) {
            throw COoxmlError(OoxmlFault::DamagedPart, {name});
        }
        got += static_cast<std::size_t>(part);
        if (part == 0 || got > size) {
            break;
        }
    }
    if (got != size) {
        throw COoxmlError(OoxmlFault::DamagedPart, {name});
    }
    bytes.resize(size);
    return bytes;
}

// Lets libzip write into a file that is open, so that the archive grows in the temporary twin of the target
// and isn't copied once more.
struct Target {
    int Descriptor = -1;
    zip_error_t Error{};
};

zip_int64_t Fail(Target& target, int code) {
    zip_error_set(&target.Error, code, errno);
    return -1;
}

zip_int64_t Seek(Target& target, void* data, zip_uint64_t length) {
    const auto* where = ZIP_SOURCE_GET_ARGS(zip_source_args_seek_t, data, length, &target.Error);
    if (where == nullptr || lseek(target.Descriptor, where->offset, where->whence) < 0) {
        return Fail(target, ZIP_ER_SEEK);
    }
    return 0;
}

zip_int64_t Write(Target& target, const void* data, zip_uint64_t length) {
    const char* bytes = static_cast<const char*>(data);
    zip_uint64_t done = 0;
    while (done < length) {
        const ssize_t part = write(target.Descriptor, bytes + done, length - done);
        if (part < 0 && errno == EINTR) {
            continue;
        }
        if (part <= 0) {
            return Fail(target, ZIP_ER_WRITE);
        }
        done += static_cast<zip_uint64_t>(part);
    }
    return static_cast<zip_int64_t>(length);
}

zip_int64_t Serve(void* state, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    Target& target = *static_cast<Target*>(state);
    switch (command) {
        case ZIP_SOURCE_OPEN:
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_BEGIN_WRITE:
        case ZIP_SOURCE_COMMIT_WRITE:
        case ZIP_SOURCE_ROLLBACK_WRITE:
        case ZIP_SOURCE_FREE:
            return 0;
        case ZIP_SOURCE_READ: {
            const ssize_t part = read(target.Descriptor, data, length);
            return part < 0 ? Fail(target, ZIP_ER_READ) : part;
        }
        case ZIP_SOURCE_SEEK:
        case ZIP_SOURCE_SEEK_WRITE:
            return Seek(target, data, length);
        case ZIP_SOURCE_TELL:
        case ZIP_SOURCE_TELL_WRITE:
            return lseek(target.Descriptor, 0, SEEK_CUR);
        case ZIP_SOURCE_WRITE:
            return Write(target, data, length);
        case ZIP_SOURCE_STAT: {
            zip_stat_t& about = *static_cast<zip_stat_t*>(data);
            zip_stat_init(&about);
            about.valid = ZIP_STAT_SIZE;
            about.size = static_cast<zip_uint64_t>(lseek(target.Descriptor, 0, SEEK_END));
            return sizeof(about);
        }
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&target.Error, data, length);
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_WRITABLE;
        default:
            zip_error_set(&target.Error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
    }
}

bool AddEntry(zip_t* archive, const ZipEntry& entry) {
    zip_source_t* content = entry.HostPath.empty()
                                ? zip_source_buffer(archive, entry.Bytes.data(), entry.Bytes.size(), 0)
                                : zip_source_file(archive, entry.HostPath.c_str(), 0, -1);
    if (content == nullptr) {
        return false;
    }
    const zip_int64_t added = zip_file_add(archive, entry.Name.c_str(), content, ZIP_FL_ENC_UTF_8);
    if (added < 0) {
        zip_source_free(content);
        return false;
    }
    const auto index = static_cast<zip_uint64_t>(added);
    const zip_int32_t method = entry.Level == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    return zip_set_file_compression(archive, index, method, entry.Level) == 0 &&
           zip_file_set_dostime(archive, index, 0, FirstDosDay, 0) == 0;
}

// False if something can't be read or written. Closes the archive in any case.
bool FillArchive(Archive archive, const std::vector<ZipEntry>& entries) {
    for (const ZipEntry& entry : entries) {
        if (!AddEntry(archive.get(), entry)) {
            return false;
        }
    }
    if (zip_close(archive.get()) != 0) {
        return false;
    }
    (void)archive.release();
    return true;
}

Archive OpenSource(zip_source_t* source, int flags) {
    if (source == nullptr) {
        return nullptr;
    }
    Archive archive(zip_open_from_source(source, flags, nullptr));
    if (!archive) {
        zip_source_free(source);
    }
    return archive;
}

}  // namespace

std::vector<ZipEntry> ReadZip(std::string_view bytes, const ZipLimits& limits) {
    const Archive archive =
        OpenSource(zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr), ZIP_RDONLY);
    if (!archive) {
        throw COoxmlError(OoxmlFault::NoDocument);
    }
    const auto count = static_cast<std::size_t>(zip_get_num_entries(archive.get(), 0));
    if (count > limits.Entries) {
        throw COoxmlError(OoxmlFault::TooLarge);
    }
    std::vector<ZipEntry> entries;
    std::unordered_set<std::string> names;
    std::size_t total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        zip_stat_t about;
        zip_stat_init(&about);
        if (zip_stat_index(archive.get(), i, 0, &about) != 0 || (about.valid & ZIP_STAT_NAME) == 0 ||
            (about.valid & ZIP_STAT_SIZE) == 0) {
            throw COoxmlError(OoxmlFault::NoDocument);
        }
        const std::string name = about.name;
        if (name.ends_with('/')) {
            continue;
        }
        if (!IsPlainName(name) || !names.insert(name).second) {
            throw COoxmlError(OoxmlFault::DamagedPart, {name});
        }
        // What is unpacked is never more than what is told here, see ReadEntry.
        if (about.size > limits.EntryBytes || (total += about.size) > limits.TotalBytes) {
            throw COoxmlError(OoxmlFault::TooLarge);
        }
        entries.push_back({name, ReadEntry(archive.get(), i, name, about.size), {}, 6});
    }
    return entries;
}

bool WriteZip(const CUnixFile& file, const std::vector<ZipEntry>& entries) {
    Target target;
    target.Descriptor = file.Descriptor();
    zip_error_init(&target.Error);
    Archive archive = OpenSource(zip_source_function_create(Serve, &target, nullptr), ZIP_TRUNCATE);
    const bool written = archive && FillArchive(std::move(archive), entries);
    zip_error_fini(&target.Error);
    return written;
}

std::string WriteZip(const std::vector<ZipEntry>& entries) {
    zip_source_t* memory = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    Archive archive = OpenSource(memory, ZIP_TRUNCATE);
    if (!archive) {
        throw COoxmlError(OoxmlFault::NoArchive);
    }
    // The archive gives up its hold when it closes; the content is read after that.
    zip_source_keep(memory);
    const std::unique_ptr<zip_source_t, decltype(&zip_source_free)> held(memory, &zip_source_free);
    zip_stat_t about;
    std::string bytes;
    if (FillArchive(std::move(archive), entries) && zip_source_stat(memory, &about) == 0 &&
        zip_source_open(memory) == 0) {
        bytes.resize(about.size);
        const zip_int64_t got = zip_source_read(memory, bytes.data(), bytes.size());
        zip_source_close(memory);
        if (got >= 0 && static_cast<std::size_t>(got) == bytes.size()) {
            return bytes;
        }
    }
    throw COoxmlError(OoxmlFault::NoArchive);
}
