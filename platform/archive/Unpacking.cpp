#include "platform/archive/Unpacking.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/Pacer.h"
#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"
#include "platform/archive/EntryApproval.h"
#include "platform/archive/EntryName.h"
#include "platform/archive/ZipReader.h"
#include "threads/WorkBehind.h"

namespace mip {

namespace {

/// Takes the unpacked entries. Names are checked paths below the output folder.
class Output {
  public:
    virtual ~Output() = default;
    virtual void Folder(const std::wstring& name) = 0;
    /// `size` is what the file will hold, in bytes.
    virtual std::unique_ptr<ExtractedFile> File(const std::wstring& name, std::uint64_t size) = 0;
};

/// A small file is unpacked into memory and written behind the unpacking of the next ones.
constexpr std::uint64_t SmallFile = 512 * 1024;

/// Asks nothing before it writes: a missing folder shows when its first file cannot be created.
class FolderOutput : public Output {
  public:
    FolderOutput(std::wstring folder, ArchiveSystem& system, Pacer& pacer)
        : folder_(std::move(folder)), system_(system), behind_(FileWriters, BytesBehind) {
        behind_.WhileWaiting = [&pacer] { pacer.Tick(); };
        CreateWithParents(folder_, system_);
        if (!folder_.ends_with(L'\\')) {
            folder_ += L'\\';
        }
    }

    void Folder(const std::wstring& name) override { CreateWithParents(folder_ + name, system_); }

    std::unique_ptr<ExtractedFile> File(const std::wstring& name, std::uint64_t size) override {
        return size <= SmallFile ? std::make_unique<FileInMemory>(*this, folder_ + name, static_cast<std::size_t>(size))
                                 : Create(folder_ + name, system_);
    }

    /// To be called at the end: what was handed over is on the disk then.
    void Complete() { behind_.Finish(); }

  private:
    class FileInMemory : public ExtractedFile {
      public:
        FileInMemory(FolderOutput& output, std::wstring path, std::size_t size)
            : output_(output), path_(std::move(path)) {
            bytes_.reserve(size);
        }
        void Write(std::span<const char> bytes) override { bytes_.append(bytes.data(), bytes.size()); }
        void Finish(const std::optional<FileTime>& modified) override {
            output_.WriteBehind(std::move(path_), std::move(bytes_), modified);
        }

      private:
        FolderOutput& output_;
        std::wstring path_;
        std::string bytes_;
    };

    void WriteBehind(std::wstring path, std::string bytes, const std::optional<FileTime>& modified) {
        const std::size_t size = bytes.size();
        auto write = [&system = system_, path = std::move(path), bytes = std::move(bytes), modified] {
            const auto file = Create(path, system);
            file->Write(bytes);
            file->Finish(modified);
        };
        behind_.Add(size, std::move(write), RethrowWhen);
    }

    static std::unique_ptr<ExtractedFile> Create(const std::wstring& path, ArchiveSystem& system) {
        try {
            return system.CreateNewFile(path);
        } catch (const PlatformError& error) {
            if (error.Code() != errors::PathNotFound) {
                throw;
            }
        }
        CreateWithParents(path.substr(0, path.rfind(L'\\')), system);
        return system.CreateNewFile(path);
    }

    static void CreateWithParents(const std::wstring& folder, ArchiveSystem& system) {
        std::vector<std::size_t> missing;
        for (std::size_t end = folder.size();; end = folder.rfind(L'\\', end - 1)) {
            try {
                system.CreateFolder(folder.substr(0, end));
                break;
            } catch (const PlatformError& error) {
                if (error.Code() != errors::PathNotFound || folder.find(L'\\') >= end) {
                    throw;
                }
            }
            missing.push_back(end);
        }
        for (; !missing.empty(); missing.pop_back()) {
            system.CreateFolder(folder.substr(0, missing.back()));
        }
    }

    std::wstring folder_;
    ArchiveSystem& system_;
    WorkBehind behind_;
};

/// For a test of the archive.
class NoOutput : public Output {
  public:
    void Folder(const std::wstring&) override {}
    std::unique_ptr<ExtractedFile> File(const std::wstring&, std::uint64_t) override {
        return std::make_unique<NoFile>();
    }

  private:
    class NoFile : public ExtractedFile {
        void Write(std::span<const char>) override {}
        void Finish(const std::optional<FileTime>&) override {}
    };
};

/// The entry may not yield a byte more or less than it declares: the free space was judged by that.
void UnpackFile(ZipReader& reader, const std::wstring& name, Output& output, Pacer& pacer) {
    const std::uint64_t declared = reader.Size();
    const auto file = output.File(name, declared);
    std::uint64_t written = 0;
    for (auto piece = reader.Data(); !piece.empty(); piece = reader.Data()) {
        if (piece.size() > declared - written) {
            throw BadArchive("bounding an entry's size", name);
        }
        file->Write(piece);
        written += piece.size();
        pacer.Tick();
    }
    if (written != declared) {
        throw BadArchive("completing an entry", name);
    }
    file->Finish(reader.Modified());
}

/// False when the library sees another kind of entry, or a larger one, than the directory was approved for.
bool IsAsApproved(const ZipReader& reader, EntryKind approved) {
    return reader.IsPlain() && (approved == EntryKind::Folder ? reader.Size() == 0 : !reader.IsFolder());
}

/// The library reads its own copy of names and sizes, from the entries themselves; only what the directory was
/// approved for passes.
void UnpackEntries(ArchiveBytes& bytes, ApprovedEntries& approved, ArchiveSystem& system, Output& output,
                   Pacer& pacer) {
    ZipReader reader(bytes, system.NameCodePage());
    std::uint64_t left = approved.TotalSize();
    while (!approved.Empty() && reader.Next()) {
        const std::wstring name = CheckedEntryName(reader.Name());
        const std::optional<EntryKind> kind = approved.Take(name);
        if (!kind || !IsAsApproved(reader, *kind) || reader.Size() > left) {
            throw BadArchive("finding an entry in the directory", name);
        }
        left -= reader.Size();
        if (kind == EntryKind::Folder) {
            output.Folder(name);
        } else {
            UnpackFile(reader, name, output, pacer);
        }
        pacer.Tick();
    }
    if (!approved.Empty()) {
        throw BadArchive("finding every entry");
    }
}

}  // namespace

void ExtractArchiveTo(const std::wstring& archive, const std::wstring& folder, ArchiveSystem& system, Clock& clock) {
    Pacer pacer(clock);
    const auto bytes = system.OpenArchive(archive);
    ApprovedEntries approved(*bytes, system, pacer);
    FolderOutput output(folder, system, pacer);
    if (approved.TotalSize() > system.FreeBytes(folder)) {
        throw PlatformError("finding room for the archive", folder, errors::DiskFull);
    }
    UnpackEntries(*bytes, approved, system, output, pacer);
    output.Complete();
}

ArchiveFacts InspectArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock) {
    Pacer pacer(clock);
    const auto bytes = system.OpenArchive(archive);
    return ApprovedEntries(*bytes, system, pacer).Facts();
}

ArchiveFacts TestArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock) {
    Pacer pacer(clock);
    const auto bytes = system.OpenArchive(archive);
    ApprovedEntries approved(*bytes, system, pacer);
    NoOutput output;
    UnpackEntries(*bytes, approved, system, output, pacer);
    return approved.Facts();
}

}  // namespace mip
