#pragma once

#include <algorithm>
#include <utility>

#include "platform/DriveName.h"
#include "platform/Files.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"
#include "text/TextTools.h"

namespace mip {

inline void RefuseWhen(bool condition, const char* operation, const std::wstring& path, std::uint32_t code) {
    if (condition) {
        throw PlatformError(operation, path, code);
    }
}

/// Where something may be created or replaced: the folder is there, the name is good, the drive takes writes.
inline FileTree::Place WritablePlace(FileTree& tree, const char* operation, const std::wstring& path) {
    FileTree::Place place = tree.Locate(path);
    const bool nameIsFree = !place.Node && place.Code == errors::FileNotFound && place.Parent;
    RefuseWhen(!place.Node && !nameIsFree, operation, path, place.Code);
    RefuseWhen(place.Drive->ReadOnly || tree.IsDenied(path), operation, path, errors::AccessDenied);
    return place;
}

/// Writes at `start`; half of it, and then the power is off, when `half`.
inline void WriteOrHalf(FileNode& node, std::size_t start, std::string_view bytes, bool half, const char* operation,
                        const std::wstring& path) {
    node.Write(start, bytes.data(), half ? bytes.size() / 2 : bytes.size());
    if (half) {
        Faults::EndHalf(operation, path);
    }
}

inline constexpr std::uint32_t NotSameDevice = 17;

inline void Rename(const FileTree::Place& from, const FileTree::Place& to) {
    from.Parent->Children.erase(ToUpper(from.Leaf));
    from.Node->Name = to.Leaf;
    to.Parent->Children[ToUpper(to.Leaf)] = from.Node;
}

inline bool HoldsOpenFile(const FileNode& node) {
    return node.OpenHandles > 0 ||
           std::ranges::any_of(node.Children, [](const auto& child) { return HoldsOpenFile(*child.second); });
}

class FakeFiles : public Files, private OnTree {
  public:
    using OnTree::OnTree;

    bool Exists(const std::wstring& path) override { return !faults_.Fails("Files.Exists") && tree_.HasFile(path); }
    FileStatus Status(const std::wstring& path) override {
        const FileNode& node = *FileAt("Files.Status", path).Node;
        return {node.Bytes.size(), node.Modified, node.Attributes};
    }
    void SetAttributes(const std::wstring& path, std::uint32_t bits) override {
        const FileTree::Place place = FileAt("Files.SetAttributes", path);
        RefuseWhen(place.Drive->ReadOnly, "SetAttributes", path, errors::AccessDenied);
        place.Node->Attributes = bits & ~attributes::Normal;
    }
    /// A power cut in this call leaves half of the new file.
    void CopyToNew(const std::wstring& source, const std::wstring& destination) override {
        const bool half = faults_.CheckOrHalf("Files.CopyToNew", destination);
        const FileNode& from = *FileAt("CopyToNew", source, false).Node;
        RefuseWhen(tree_.Find(destination) != nullptr, "CopyToNew", destination, errors::FileExists);
        const FileTree::Place to = WritablePlace(tree_, "CopyToNew", destination);
        RefuseWhen(from.Bytes.size() > to.Drive->FreeBytes, "CopyToNew", destination, errors::DiskFull);
        FileNode& copy = *tree_.AddChild(to, NodeKind::File);
        WriteOrHalf(copy, 0, from.Bytes, half, "CopyToNew", destination);
        copy.Modified = from.Modified;
        copy.Attributes = 0;
    }
    /// As two writers do it: files are done out of order, and one more is done when `copied` throws.
    void CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                      const std::wstring& destination, const Copied& copied) override {
        constexpr std::size_t Writers = 2;
        for (std::size_t start = 0; start < names.size(); start += Writers) {
            std::vector<std::pair<std::wstring, std::uint32_t>> done;
            for (std::size_t i = std::min(start + Writers, names.size()); i-- > start;) {
                done.emplace_back(
                    names[i], CodeOf([&] { CopyToNew(source + L'\\' + names[i], destination + L'\\' + names[i]); }));
            }
            for (const auto& [name, code] : done) {
                copied(name, code);
            }
        }
    }
    void Move(const std::wstring& source, const std::wstring& destination) override {
        const FileTree::Place from = FileAt("Files.Move", source);
        const FileTree::Place to = WritablePlace(tree_, "Move", destination);
        RefuseWhen(from.Drive->ReadOnly, "Move", source, errors::AccessDenied);
        RefuseWhen(from.Drive != to.Drive, "Move", destination, NotSameDevice);
        RefuseWhen(from.Node->OpenHandles > 0, "Move", source, errors::SharingViolation);
        if (to.Node && to.Node != from.Node) {
            const bool mayGo = to.Node->Kind == NodeKind::File && !to.Node->IsReadOnly() && to.Node->OpenHandles == 0;
            RefuseWhen(!mayGo, "Move", destination, errors::AccessDenied);
            tree_.Detach(to);
        }
        from.Node->Flush();
        Rename(from, to);
    }
    void Remove(const std::wstring& path) override {
        const FileTree::Place place = FileAt("Files.Remove", path);
        RefuseWhen(place.Drive->ReadOnly || place.Node->IsReadOnly(), "Remove", path, errors::AccessDenied);
        RefuseWhen(place.Node->OpenHandles > 0, "Remove", path, errors::SharingViolation);
        tree_.Detach(place);
    }
    bool IsInUse(const std::wstring& path) override {
        const std::shared_ptr<FileNode> node = tree_.Find(path);
        return !faults_.Fails("Files.IsInUse") && node && node->OpenHandles > 0;
    }
    std::string Read(const std::wstring& path, std::uint64_t limit = UINT64_MAX) override {
        const std::string& bytes = FileAt("Files.Read", path).Node->Bytes;
        return bytes.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(limit, bytes.size())));
    }
    void ReadThrough(const std::wstring& path) override { FileAt("Files.ReadThrough", path); }
    /// A power cut in this call, and in Append, leaves half of the new bytes.
    void Write(const std::wstring& path, const std::string& bytes) override { Put("Files.Write", path, bytes, false); }
    void Append(const std::wstring& path, const std::string& bytes) override { Put("Files.Append", path, bytes, true); }

  private:
    FileTree::Place FileAt(const char* operation, const std::wstring& path, bool counts = true) {
        if (counts) {
            faults_.Check(operation, path);
        }
        FileTree::Place place = tree_.Locate(path);
        RefuseWhen(!place.Node, operation, path, place.Code);
        const bool denied = tree_.IsDenied(path);
        RefuseWhen(denied || place.Node->Kind != NodeKind::File, operation, path, errors::AccessDenied);
        return place;
    }
    void Put(const char* operation, const std::wstring& path, const std::string& bytes, bool append) {
        const bool half = faults_.CheckOrHalf(operation, path);
        const FileTree::Place place = WritablePlace(tree_, operation, path);
        if (place.Node) {
            const bool writable = place.Node->Kind == NodeKind::File && !place.Node->IsReadOnly();
            RefuseWhen(!writable, operation, path, errors::AccessDenied);
            RefuseWhen(place.Node->OpenHandles > 0, operation, path, errors::SharingViolation);
        }
        RefuseWhen(bytes.size() > place.Drive->FreeBytes, operation, path, errors::DiskFull);
        const std::shared_ptr<FileNode> node = place.Node ? place.Node : tree_.AddChild(place, NodeKind::File);
        const std::size_t start = append ? node->Bytes.size() : 0;
        node->Resize(start);
        WriteOrHalf(*node, start, bytes, half, operation, path);
    }
};

class FakeFolders : public Folders, private OnTree {
  public:
    using OnTree::OnTree;

    bool Exists(const std::wstring& folder) override {
        return !faults_.Fails("Folders.Exists") && tree_.HasFolder(folder);
    }
    bool IsLink(const std::wstring& folder) override {
        const FileTree::Place place = tree_.Locate(folder, false);
        return !faults_.Fails("Folders.IsLink") && place.Node && place.Node->Kind == NodeKind::Link;
    }
    void Create(const std::wstring& folder) override {
        faults_.Check("Folders.Create", folder);
        RefuseWhen(tree_.Find(folder) != nullptr, "Create", folder, errors::AlreadyExists);
        tree_.AddChild(WritablePlace(tree_, "Create", folder), NodeKind::Folder);
    }
    void Move(const std::wstring& source, const std::wstring& destination) override {
        faults_.Check("Folders.Move", source);
        const FileTree::Place from = tree_.Locate(source);
        RefuseWhen(!tree_.HasFolder(source), "Move", source, errors::FileNotFound);
        const FileTree::Place to = WritablePlace(tree_, "Move", destination);
        RefuseWhen(from.Drive != to.Drive, "Move", destination, NotSameDevice);
        RefuseWhen(to.Node != nullptr, "Move", destination, errors::AlreadyExists);
        RefuseWhen(from.Drive->ReadOnly || HoldsOpenFile(*from.Node), "Move", source, errors::AccessDenied);
        Rename(from, to);
    }
    void Remove(const std::wstring& folder) override {
        constexpr std::uint32_t NotEmpty = 145;
        faults_.Check("Folders.Remove", folder);
        const FileTree::Place place = tree_.Locate(folder);
        RefuseWhen(!tree_.HasFolder(folder), "Remove", folder, errors::FileNotFound);
        RefuseWhen(place.Drive->ReadOnly || tree_.IsDenied(folder), "Remove", folder, errors::AccessDenied);
        RefuseWhen(!place.Node->Children.empty(), "Remove", folder, NotEmpty);
        tree_.Detach(place);
    }
    /// In the order of upper-cased names.
    FolderListing List(const std::wstring& folder) override {
        faults_.Check("Folders.List", folder);
        RefuseWhen(!tree_.HasFolder(folder), "List", folder, errors::PathNotFound);
        RefuseWhen(tree_.IsDenied(folder), "List", folder, errors::AccessDenied);
        FolderListing listing;
        for (const auto& [key, child] : tree_.Find(folder)->Children) {
            auto& names = child->Kind == NodeKind::Link     ? listing.Links
                          : child->Kind == NodeKind::Folder ? listing.Subfolders
                                                            : listing.Files;
            names.push_back(child->Name);
        }
        return listing;
    }
};

class FakeVolumes : public Volumes, private OnTree {
  public:
    using OnTree::OnTree;

    std::wstring DriveName(const std::wstring& path) override {
        faults_.CheckPower();
        return DriveNameOf(path);
    }
    double FreeBytes(const std::wstring& root) override {
        const FakeDrive& drive = *At("Volumes.FreeBytes", root).Drive;
        return drive.ReadOnly ? 0.0 : static_cast<double>(drive.FreeBytes);
    }
    std::wstring FileSystemName(const std::wstring& root) override {
        return At("Volumes.FileSystemName", root).Drive->FileSystem;
    }
    bool IsOneVolume(const std::wstring& one, const std::wstring& other) override {
        return !faults_.Fails("Volumes.IsOneVolume") && tree_.DriveOf(one) == tree_.DriveOf(other);
    }
    void Flush(const std::wstring& folder) override { At("Volumes.Flush", folder).Node->Flush(); }

  private:
    FileTree::Place At(const char* operation, const std::wstring& path) {
        faults_.Check(operation, path);
        FileTree::Place place = tree_.Locate(path);
        RefuseWhen(!place.Node, operation, path, place.Code);
        return place;
    }
};

}  // namespace mip
