#pragma once

#include <algorithm>
#include <clocale>
#include <mutex>

#include "platform/archive/ArchiveSystem.h"
#include "tests/native/fakes/FakeFiles.h"

namespace mip {

/// The embedded extractor's view of the files in memory; several threads may use it at once. Names of entries are
/// UTF-8. A power cut in a write leaves half of its bytes.
class FakeArchiveSystem : public ArchiveSystem, private OnTree {
  public:
    FakeArchiveSystem(FileTree& tree, Faults& faults) : OnTree(tree, faults), folders_(tree, faults) {
        std::setlocale(LC_CTYPE, "C.UTF-8");  // by which the reading library makes wide names
    }

    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) override {
        faults_.Check("Archives.Open", path);
        return std::make_unique<Reading>(*this, FileAt(path));
    }
    void CreateFolder(const std::wstring& folder) override {
        const std::lock_guard lock(mutex_);
        const std::uint32_t code = CodeOf([&] { folders_.Create(folder); });
        RefuseWhen(code != 0 && !(code == errors::AlreadyExists && tree_.HasFolder(folder)), "CreateFolder", folder,
                   code);
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        const std::lock_guard lock(mutex_);
        faults_.Check("Archives.CreateNewFile", path);
        FileTree::Place place = WritablePlace(tree_, "CreateNewFile", path);
        if (place.Node) {
            RefuseWhen(FileAt(path)->OpenHandles > 0, "CreateNewFile", path, errors::SharingViolation);
            tree_.Detach(place);
        }
        place.Node = tree_.AddChild(place, NodeKind::File);
        return std::make_unique<Writing>(*this, std::move(place));
    }
    std::uint64_t FreeBytes(const std::wstring& folder) override {
        const std::lock_guard lock(mutex_);
        faults_.Check("Archives.FreeBytes", folder);
        return tree_.DriveOf(folder)->FreeBytes;
    }
    unsigned NameCodePage() override { return 65001; }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned) override {
        std::wstring text = FromUtf8(bytes);
        return ToUtf8(text) == bytes ? std::optional(std::move(text)) : std::nullopt;
    }
    std::wstring FoldCase(std::wstring name) override { return ToUpper(name); }

  private:
    /// The reading library is C: a call throws PlatformError, which is trapped before that, also when the power goes.
    struct Reading : ArchiveBytes {
        Reading(FakeArchiveSystem& system, std::shared_ptr<FileNode> node) : System(system), Node(std::move(node)) {}
        std::uint64_t Size() override { return Node->Bytes.size(); }
        std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
            const std::lock_guard lock(System.mutex_);
            const bool reads = System.faults_.Next("Archives.ReadAt") == Faults::Verdict::Proceed;
            RefuseWhen(!reads, "ReadAt", Node->Name, errors::AccessDenied);
            return Node->Read(offset, buffer.data(), buffer.size());
        }
        FakeArchiveSystem& System;
        std::shared_ptr<FileNode> Node;
    };

    struct Writing : ExtractedFile {
        Writing(FakeArchiveSystem& system, FileTree::Place place) : System(system), Place(std::move(place)) {}
        Writing(const Writing&) = delete;
        Writing& operator=(const Writing&) = delete;
        ~Writing() override {
            const std::lock_guard lock(System.mutex_);
            if (!Finished && !System.faults_.PowerIsOff()) {
                System.tree_.Detach(Place);
            }
        }
        void Write(std::span<const char> bytes) override {
            const std::lock_guard lock(System.mutex_);
            const bool half = System.faults_.CheckOrHalf("Archives.Write", Place.Leaf);
            WriteOrHalf(*Place.Node, Place.Node->Bytes.size(), {bytes.data(), bytes.size()}, half, "Write", Place.Leaf);
        }
        void Finish(const std::optional<FileTime>& modified) override {
            const std::lock_guard lock(System.mutex_);
            System.faults_.Check("Archives.Finish", Place.Leaf);
            Place.Node->Modified = modified.value_or(Place.Node->Modified);
            Place.Node->Attributes = 0;
            Finished = true;
        }
        FakeArchiveSystem& System;
        FileTree::Place Place;
        bool Finished = false;
    };

    std::shared_ptr<FileNode> FileAt(const std::wstring& path) {
        const FileTree::Place place = tree_.Locate(path);
        RefuseWhen(!place.Node, "open", path, place.Code);
        RefuseWhen(tree_.IsDenied(path) || place.Node->Kind != NodeKind::File, "open", path, errors::AccessDenied);
        return place.Node;
    }

    FakeFolders folders_;
    std::mutex mutex_;
};

}  // namespace mip
