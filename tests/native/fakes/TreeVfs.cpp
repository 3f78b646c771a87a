#include "tests/native/fakes/TreeVfs.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr int LongestPath = 1024;
constexpr std::size_t PageSize = 4096;

/// An open file as the engine keeps it: it allocates the memory and knows the first member.
struct OpenFile {
    sqlite3_file Engine;
    TreeVfs* Vfs;
    std::shared_ptr<FileNode> Node;
    int Lock;
};

OpenFile& FileOf(sqlite3_file* file) {
    return *reinterpret_cast<OpenFile*>(file);
}

TreeVfs& VfsOf(sqlite3_vfs* vfs) {
    return *static_cast<TreeVfs*>(vfs->pAppData);
}

int Close(sqlite3_file* engineFile) noexcept {
    OpenFile& file = FileOf(engineFile);
    const bool refused = file.Vfs->Refuses("Vfs.Close");
    engineFile->pMethods->xUnlock(engineFile, SQLITE_LOCK_NONE);
    --file.Node->OpenHandles;
    file.~OpenFile();
    return refused ? SQLITE_IOERR_CLOSE : SQLITE_OK;
}

int Read(sqlite3_file* engineFile, void* buffer, int size, sqlite3_int64 offset) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.Read")) {
        return SQLITE_IOERR_READ;
    }
    const auto wanted = static_cast<std::size_t>(size);
    const std::size_t read = file.Node->Read(static_cast<std::uint64_t>(offset), buffer, wanted);
    std::memset(static_cast<char*>(buffer) + read, 0, wanted - read);
    return read == wanted ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* engineFile, const void* data, int size, sqlite3_int64 offset) noexcept {
    OpenFile& file = FileOf(engineFile);
    const Faults::Verdict verdict = file.Vfs->Ask("Vfs.Write");
    if (verdict == Faults::Verdict::Fail || verdict == Faults::Verdict::PowerOff) {
        return SQLITE_IOERR_WRITE;
    }
    const bool cut = verdict == Faults::Verdict::Cut;
    try {
        file.Node->Write(static_cast<std::uint64_t>(offset), data, static_cast<std::size_t>(cut ? size / 2 : size));
        return cut ? SQLITE_IOERR_WRITE : SQLITE_OK;
    } catch (const PlatformError& error) {
        return error.Code() == errors::DiskFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
}

int Truncate(sqlite3_file* engineFile, sqlite3_int64 size) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.Truncate")) {
        return SQLITE_IOERR_TRUNCATE;
    }
    file.Node->Resize(static_cast<std::uint64_t>(size));
    return SQLITE_OK;
}

int Sync(sqlite3_file* engineFile, int) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.Sync")) {
        return SQLITE_IOERR_FSYNC;
    }
    file.Node->Flush();
    return SQLITE_OK;
}

int FileSize(sqlite3_file* engineFile, sqlite3_int64* size) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.FileSize")) {
        return SQLITE_IOERR_FSTAT;
    }
    *size = static_cast<sqlite3_int64>(file.Node->Bytes.size());
    return SQLITE_OK;
}

int Lock(sqlite3_file* engineFile, int level) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.Lock")) {
        return SQLITE_IOERR_LOCK;
    }
    TreeVfs::Locks& locks = file.Vfs->LocksOf(*file.Node);
    if (level <= file.Lock) {
        return SQLITE_OK;
    }
    const bool othersWrite = locks.Writer != nullptr && locks.Writer != engineFile;
    if (level == SQLITE_LOCK_SHARED) {
        if (othersWrite && locks.ReadersRefused) {
            return SQLITE_BUSY;
        }
        ++locks.Readers;
    } else {
        if (othersWrite) {
            return SQLITE_BUSY;
        }
        locks.Writer = engineFile;
        locks.ReadersRefused = level == SQLITE_LOCK_EXCLUSIVE;
        if (level == SQLITE_LOCK_EXCLUSIVE && locks.Readers > 1) {
            file.Lock = SQLITE_LOCK_PENDING;
            return SQLITE_BUSY;
        }
    }
    file.Lock = level;
    return SQLITE_OK;
}

int Unlock(sqlite3_file* engineFile, int level) noexcept {
    OpenFile& file = FileOf(engineFile);
    const bool refused = file.Vfs->Refuses("Vfs.Unlock");
    TreeVfs::Locks& locks = file.Vfs->LocksOf(*file.Node);
    if (locks.Writer == engineFile) {
        locks.Writer = nullptr;
        locks.ReadersRefused = false;
    }
    if (level == SQLITE_LOCK_NONE && file.Lock != SQLITE_LOCK_NONE) {
        --locks.Readers;
    }
    file.Lock = std::min(file.Lock, level);
    return refused ? SQLITE_IOERR_UNLOCK : SQLITE_OK;
}

int CheckReservedLock(sqlite3_file* engineFile, int* reserved) noexcept {
    OpenFile& file = FileOf(engineFile);
    if (file.Vfs->Refuses("Vfs.CheckReservedLock")) {
        return SQLITE_IOERR_CHECKRESERVEDLOCK;
    }
    *reserved = file.Vfs->LocksOf(*file.Node).Writer != nullptr ? 1 : 0;
    return SQLITE_OK;
}

int FileControl(sqlite3_file*, int, void*) noexcept {
    return SQLITE_NOTFOUND;
}

int SectorSize(sqlite3_file*) noexcept {
    return static_cast<int>(PageSize);
}

int DeviceCharacteristics(sqlite3_file*) noexcept {
    return SQLITE_IOCAP_UNDELETABLE_WHEN_OPEN;
}

constexpr sqlite3_io_methods FileMethods = {1,
                                            Close,
                                            Read,
                                            Write,
                                            Truncate,
                                            Sync,
                                            FileSize,
                                            Lock,
                                            Unlock,
                                            CheckReservedLock,
                                            FileControl,
                                            SectorSize,
                                            DeviceCharacteristics,
                                            nullptr,
                                            nullptr,
                                            nullptr,
                                            nullptr,
                                            nullptr,
                                            nullptr};

bool IsWritable(const FileTree::Place& place) {
    return !place.Drive->ReadOnly && (!place.Node || (place.Node->Attributes & attributes::ReadOnly) == 0);
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
    auto* file = new (engineFile) OpenFile{{&FileMethods}, &vfs, place.Node, SQLITE_LOCK_NONE};
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

int Access(sqlite3_vfs* engineVfs, const char* name, int flags, int* result) noexcept {
    TreeVfs& vfs = VfsOf(engineVfs);
    if (vfs.Refuses("Vfs.Access")) {
        return SQLITE_IOERR_ACCESS;
    }
    const FileTree::Place place = vfs.Tree().Locate(FromUtf8(name));
    const bool exists = place.Node && (place.Node->Kind != NodeKind::File || !place.Node->Bytes.empty());
    *result = exists && (flags != SQLITE_ACCESS_READWRITE || IsWritable(place)) ? 1 : 0;
    return SQLITE_OK;
}

int FullPathname(sqlite3_vfs*, const char* name, int size, char* result) noexcept {
    sqlite3_snprintf(size, result, "%s", name);
    return SQLITE_OK;
}

int Randomness(sqlite3_vfs*, int size, char* bytes) noexcept {
    std::memset(bytes, 0x5A, static_cast<std::size_t>(size));
    return size;
}

int Sleep(sqlite3_vfs*, int microseconds) noexcept {
    return microseconds;
}

int CurrentTime(sqlite3_vfs*, double* julianDay) noexcept {
    *julianDay = 2460436.8;
    return SQLITE_OK;
}

int GetLastError(sqlite3_vfs*, int, char*) noexcept {
    return 0;
}

}  // namespace

TreeVfs::TreeVfs(FileTree& tree, Faults& faults)
    : tree_(tree), faults_(faults), name_("tree" + std::to_string(reinterpret_cast<std::uintptr_t>(this))) {
    vfs_.iVersion = 1;
    vfs_.szOsFile = sizeof(OpenFile);
    vfs_.mxPathname = LongestPath;
    vfs_.zName = name_.c_str();
    vfs_.pAppData = this;
    vfs_.xOpen = Open;
    vfs_.xDelete = Delete;
    vfs_.xAccess = Access;
    vfs_.xFullPathname = FullPathname;
    vfs_.xRandomness = Randomness;
    vfs_.xSleep = Sleep;
    vfs_.xCurrentTime = CurrentTime;
    vfs_.xGetLastError = GetLastError;
    if (sqlite3_vfs_register(&vfs_, 0) != SQLITE_OK) {
        throw PlatformError("sqlite3_vfs_register", L"", SQLITE_ERROR);
    }
}

TreeVfs::~TreeVfs() {
    sqlite3_vfs_unregister(&vfs_);
}

}  // namespace mip
