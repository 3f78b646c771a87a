#include "tests/native/fakes/TreeVfs.h"

#include <cstring>
#include <new>

#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

/// An open file as the engine keeps it: it allocates the memory and knows the first member.
struct OpenFile {
    sqlite3_file Engine;
    TreeVfs* Vfs;
    std::shared_ptr<FileNode> Node;
};

OpenFile& FileOf(sqlite3_file* file) {
    return *reinterpret_cast<OpenFile*>(file);
}

TreeVfs& VfsOf(sqlite3_vfs* vfs) {
    return *static_cast<TreeVfs*>(vfs->pAppData);
}

int Write(sqlite3_file* engineFile, const void* data, int size, sqlite3_int64 offset) noexcept {
    const OpenFile& file = FileOf(engineFile);
    const Faults::Verdict verdict = file.Vfs->Ask("Vfs.Write");
    const bool cut = verdict == Faults::Verdict::Cut;
    if (verdict != Faults::Verdict::Proceed && !cut) {
        return SQLITE_IOERR_WRITE;
    }
    try {
        file.Node->Write(static_cast<std::uint64_t>(offset), data, static_cast<std::size_t>(cut ? size / 2 : size));
        return cut ? SQLITE_IOERR_WRITE : SQLITE_OK;
    } catch (const PlatformError& error) {
        return error.Code() == errors::DiskFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
}

int Lock(sqlite3_file* engineFile, int level) noexcept {
    const OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.Lock")) {
        return SQLITE_IOERR_LOCK;
    }
    const void*& writer = file.Vfs->WriterOf(*file.Node);
    if (level > SQLITE_LOCK_SHARED && writer != nullptr && writer != engineFile) {
        return SQLITE_BUSY;
    }
    writer = level > SQLITE_LOCK_SHARED ? engineFile : writer;
    return SQLITE_OK;
}

int Unlock(sqlite3_file* engineFile, int) noexcept {
    const OpenFile& file = FileOf(engineFile);
    const void*& writer = file.Vfs->WriterOf(*file.Node);
    writer = writer == engineFile ? nullptr : writer;
    return file.Vfs->Refuses("Vfs.Unlock") ? SQLITE_IOERR_UNLOCK : SQLITE_OK;
}

int Close(sqlite3_file* engineFile) noexcept {
    OpenFile& file = FileOf(engineFile);
    const bool refused = file.Vfs->Refuses("Vfs.Close");
    Unlock(engineFile, SQLITE_LOCK_NONE);
    --file.Node->OpenHandles;
    file.~OpenFile();
    return refused ? SQLITE_IOERR_CLOSE : SQLITE_OK;
}

const sqlite3_io_methods FileMethods = [] {
    sqlite3_io_methods methods{};
    methods.iVersion = 1;
    methods.xClose = Close;
    methods.xRead = [](sqlite3_file* engineFile, void* buffer, int size, sqlite3_int64 offset) {
        const OpenFile& file = FileOf(engineFile);
        if (file.Vfs->Refuses("Vfs.Read")) {
            return SQLITE_IOERR_READ;
        }
        const auto wanted = static_cast<std::size_t>(size);
        const std::size_t read = file.Node->Read(static_cast<std::uint64_t>(offset), buffer, wanted);
        std::memset(static_cast<char*>(buffer) + read, 0, wanted - read);
        return read == wanted ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
    };
    methods.xWrite = Write;
    methods.xTruncate = [](sqlite3_file* engineFile, sqlite3_int64 size) {
        const OpenFile& file = FileOf(engineFile);
        if (file.Vfs->Refuses("Vfs.Truncate")) {
            return SQLITE_IOERR_TRUNCATE;
        }
        file.Node->Resize(static_cast<std::uint64_t>(size));
        return SQLITE_OK;
    };
    methods.xSync = [](sqlite3_file* engineFile, int) {
        const OpenFile& file = FileOf(engineFile);
        if (file.Vfs->Refuses("Vfs.Sync")) {
            return SQLITE_IOERR_FSYNC;
        }
        file.Node->Flush();
        return SQLITE_OK;
    };
    methods.xFileSize = [](sqlite3_file* engineFile, sqlite3_int64* size) {
        const OpenFile& file = FileOf(engineFile);
        *size = static_cast<sqlite3_int64>(file.Node->Bytes.size());
        return file.Vfs->Refuses("Vfs.FileSize") ? SQLITE_IOERR_FSTAT : SQLITE_OK;
    };
    methods.xLock = Lock;
    methods.xUnlock = Unlock;
    methods.xCheckReservedLock = [](sqlite3_file* engineFile, int* reserved) {
        const OpenFile& file = FileOf(engineFile);
        *reserved = file.Vfs->WriterOf(*file.Node) != nullptr ? 1 : 0;
        return file.Vfs->Refuses("Vfs.CheckReservedLock") ? SQLITE_IOERR_CHECKRESERVEDLOCK : SQLITE_OK;
    };
    methods.xFileControl = [](sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; };
    methods.xSectorSize = [](sqlite3_file*) { return 4096; };
    methods.xDeviceCharacteristics = [](sqlite3_file*) { return SQLITE_IOCAP_UNDELETABLE_WHEN_OPEN; };
    return methods;
}();

bool IsWritable(const FileTree::Place& place) {
    return !place.Drive->ReadOnly && (!place.Node || !place.Node->IsReadOnly());
}

int Open(sqlite3_vfs* engineVfs, sqlite3_filename name, sqlite3_file* engineFile, int flags, int* outFlags) noexcept {
    engineFile->pMethods = nullptr;
    TreeVfs& vfs = VfsOf(engineVfs);
    if (vfs.Refuses("Vfs.Open") || name == nullptr) {
        return SQLITE_CANTOPEN;
    }
    FileTree::Place place = vfs.Tree().Locate(FromUtf8(name));
    const bool writable = place.Drive != nullptr && IsWritable(place);
    const bool creates = !place.Node && place.Parent && (flags & SQLITE_OPEN_CREATE) != 0 && writable;
    const bool mustBeNew = (flags & SQLITE_OPEN_EXCLUSIVE) != 0;
    const bool isFile = place.Node && place.Node->Kind == NodeKind::File;
    if ((!isFile && !creates) || (isFile && mustBeNew) || vfs.Tree().IsDenied(FromUtf8(name))) {
        return SQLITE_CANTOPEN;
    }
    auto* file = new (engineFile) OpenFile{{&FileMethods}, &vfs, place.Node};
    if (creates) {
        file->Node = vfs.Tree().AddChild(place, NodeKind::File);
    }
    ++file->Node->OpenHandles;
    if (outFlags != nullptr) {
        *outFlags = writable ? flags : (flags & ~SQLITE_OPEN_READWRITE) | SQLITE_OPEN_READONLY;
    }
    return SQLITE_OK;
}

int Delete(sqlite3_vfs* engineVfs, const char* name, int) noexcept {
    TreeVfs& vfs = VfsOf(engineVfs);
    if (vfs.Refuses("Vfs.Delete")) {
        return SQLITE_IOERR_DELETE;
    }
    const FileTree::Place place = vfs.Tree().Locate(FromUtf8(name));
    if (!place.Node) {
        return SQLITE_IOERR_DELETE_NOENT;
    }
    if (!IsWritable(place) || place.Node->OpenHandles > 0) {
        return SQLITE_IOERR_DELETE;
    }
    vfs.Tree().Detach(place);
    return SQLITE_OK;
}

}  // namespace

TreeVfs::TreeVfs(FileTree& tree, Faults& faults)
    : tree_(tree), faults_(faults), name_("tree" + std::to_string(reinterpret_cast<std::uintptr_t>(this))) {
    vfs_.iVersion = 1;
    vfs_.szOsFile = sizeof(OpenFile);
    vfs_.mxPathname = 1024;
    vfs_.zName = name_.c_str();
    vfs_.pAppData = this;
    vfs_.xOpen = Open;
    vfs_.xDelete = Delete;
    vfs_.xAccess = [](sqlite3_vfs* engineVfs, const char* name, int flags, int* result) {
        const FileTree::Place place = VfsOf(engineVfs).Tree().Locate(FromUtf8(name));
        const bool exists = place.Node && (place.Node->Kind != NodeKind::File || !place.Node->Bytes.empty());
        *result = exists && (flags != SQLITE_ACCESS_READWRITE || IsWritable(place)) ? 1 : 0;
        return VfsOf(engineVfs).Refuses("Vfs.Access") ? SQLITE_IOERR_ACCESS : SQLITE_OK;
    };
    vfs_.xFullPathname = [](sqlite3_vfs*, const char* name, int size, char* result) {
        sqlite3_snprintf(size, result, "%s", name);
        return SQLITE_OK;
    };
    vfs_.xRandomness = [](sqlite3_vfs*, int size, char* bytes) {
        std::memset(bytes, 0x5A, static_cast<std::size_t>(size));
        return size;
    };
    vfs_.xSleep = [](sqlite3_vfs*, int microseconds) { return microseconds; };
    vfs_.xCurrentTime = [](sqlite3_vfs*, double* julianDay) {
        *julianDay = 2460436.8;
        return SQLITE_OK;
    };
    vfs_.xGetLastError = [](sqlite3_vfs*, int, char*) { return 0; };
    if (sqlite3_vfs_register(&vfs_, 0) != SQLITE_OK) {
        throw PlatformError("sqlite3_vfs_register", L"", SQLITE_ERROR);
    }
}

TreeVfs::~TreeVfs() {
    sqlite3_vfs_unregister(&vfs_);
}

}  // namespace mip
