#include "platform/archive/Unpacking.h"

#include <memory>
#include <span>
#include <vector>

#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/BadArchive.h"
#include "platform/archive/EntryApproval.h"
#include "platform/archive/EntryName.h"
#include "platform/archive/Pacer.h"
#include "platform/archive/ZipReader.h"

namespace mip {

namespace {

/// Takes the unpacked entries. Names are checked paths below the output folder.
class Output {
  public:
    virtual ~Output() = default;
    virtual void Folder(const std::wstring& name) = 0;
    virtual std::unique_ptr<ExtractedFile> File(const std::wstring& name) = 0;
};

/// Asks nothing before it writes: a missing folder shows when its first file cannot be created.
class FolderOutput : public Output {
  public:
    FolderOutput(std::wstring folder, ArchiveSystem& system) : folder_(std::move(folder)), system_(system) {
        CreateWithParents(folder_, system_);
        if (!folder_.ends_with(L'\\')) {
            folder_ += L'\\';
        }
    }

    void Folder(const std::wstring& name) override { CreateWithParents(folder_ + name, system_); }

    std::unique_ptr<ExtractedFile> File(const std::wstring& name) override {
        const std::wstring path = folder_ + name;
        try {
            return system_.CreateNewFile(path);
        } catch (const PlatformError& error) {
            if (error.Code() != errors::PathNotFound) {
                throw;
            }
        }
        CreateWithParents(path.substr(0, path.rfind(L'\\')), system_);
        return system_.CreateNewFile(path);
    }

  private:
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
};

/// For a test of the archive.
class NoOutput : public Output {
  public:
    void Folder(const std::wstring&) override {}
    std::unique_ptr<ExtractedFile> File(const std::wstring&) override { return std::make_unique<NoFile>(); }

  private:
    class NoFile : public ExtractedFile {
        void Write(std::span<const char>) override {}
        void Finish(const std::optional<FileTime>&) override {}
    };
};

/// The entry may not yield a byte more or less than it declares: the free space was judged by that.
void UnpackFile(ZipReader& reader, const std::wstring& name, Output& output, Pacer& pacer) {
    const auto file = output.File(name);
    const std::uint64_t declared = reader.Size();
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

/// The library reads its own copy of names and sizes, from the entries themselves; only what the directory was
/// approved for passes.
void UnpackEntries(ArchiveBytes& bytes, ApprovedEntries& approved, ArchiveSystem& system, Output& output,
                   Pacer& pacer) {
    ZipReader reader(bytes, system.NameCodePage());
    std::uint64_t left = approved.TotalSize();
    while (!approved.Empty() && reader.Next()) {
        const std::wstring name = CheckedEntryName(reader.Name());
        const bool folderWithContent = reader.IsFolder() && reader.Size() != 0;
        if (!reader.IsPlain() || folderWithContent || reader.Size() > left || !approved.Take(name)) {
            throw BadArchive("finding an entry in the directory", name);
        }
        left -= reader.Size();
        if (reader.IsFolder()) {
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
    FolderOutput output(folder, system);
    if (approved.TotalSize() > system.FreeBytes(folder)) {
        throw PlatformError("finding room for the archive", folder, errors::DiskFull);
    }
    UnpackEntries(*bytes, approved, system, output, pacer);
}

std::uint64_t TestArchive(const std::wstring& archive, ArchiveSystem& system, Clock& clock) {
    Pacer pacer(clock);
    const auto bytes = system.OpenArchive(archive);
    ApprovedEntries approved(*bytes, system, pacer);
    NoOutput output;
    UnpackEntries(*bytes, approved, system, output, pacer);
    return approved.Files();
}

}  // namespace mip
