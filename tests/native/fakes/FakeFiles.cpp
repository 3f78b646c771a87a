#include "tests/native/fakes/FakeFiles.h"

#include <algorithm>
#include <utility>

#include "platform/DriveName.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t NotSameDevice = 17;

void RefuseWhen(bool condition, const char* operation, const std::wstring& path, std::uint32_t code) {
    if (condition) {
        throw PlatformError(operation, path, code);
    }
}

/// Where something may be created or replaced: the folder is there, the name is good, the drive takes writes.
FileTree::Place WritablePlace(FileTree& tree, const char* operation, const std::wstring& path) {
    FileTree::Place place = tree.Locate(path);
    const bool nameIsFree = !place.Node && place.Code == errors::FileNotFound && place.Parent;
    RefuseWhen(!place.Node && !nameIsFree, operation, path, place.Code);
    RefuseWhen(place.Drive->ReadOnly || tree.IsDenied(path), operation, path, errors::AccessDenied);
    return place;
}

bool IsReadOnly(const FileNode& node) {
    return (node.Attributes & attributes::ReadOnly) != 0;
}

}  // namespace

FileTree::Place FakeFiles::FileAt(const char* operation, const std::wstring& path) {
    FileTree::Place place = tree_.Locate(path);
    RefuseWhen(!place.Node, operation, path, place.Code);
    const bool denied = tree_.IsDenied(path);
    RefuseWhen(denied || place.Node->Kind != NodeKind::File, operation, path, errors::AccessDenied);
    return place;
}

bool FakeFiles::Exists(const std::wstring& path) {
    return !faults_.Fails("Files.Exists") && tree_.HasFile(path);
}

FileStatus FakeFiles::Status(const std::wstring& path) {
    faults_.Check("Files.Status", path);
    const FileTree::Place place = FileAt("Status", path);
    return {place.Node->Bytes.size(), place.Node->Modified, place.Node->Attributes};
}

void FakeFiles::SetAttributes(const std::wstring& path, std::uint32_t bits) {
    faults_.Check("Files.SetAttributes", path);
    const FileTree::Place place = FileAt("SetAttributes", path);
    RefuseWhen(place.Drive->ReadOnly, "SetAttributes", path, errors::AccessDenied);
    place.Node->Attributes = bits & ~attributes::Normal;
}

void FakeFiles::CopyToNew(const std::wstring& source, const std::wstring& destination) {
    const Faults::Verdict verdict = faults_.Next("Files.CopyToNew");
    RefuseWhen(verdict != Faults::Verdict::Cut && Faults::Answer(verdict), "CopyToNew", destination,
               errors::AccessDenied);
    const FileTree::Place from = FileAt("CopyToNew", source);
    RefuseWhen(tree_.Find(destination) != nullptr, "CopyToNew", destination, errors::FileExists);
    const FileTree::Place to = WritablePlace(tree_, "CopyToNew", destination);
    const std::string& bytes = from.Node->Bytes;
    RefuseWhen(bytes.size() > to.Drive->FreeBytes, "CopyToNew", destination, errors::DiskFull);
    const std::shared_ptr<FileNode> copy = tree_.AddChild(to, NodeKind::File);
    if (verdict == Faults::Verdict::Cut) {
        copy->Write(0, bytes.data(), bytes.size() / 2);
        RefuseWhen(Faults::Answer(verdict), "CopyToNew", destination, errors::AccessDenied);
    }
    copy->Write(0, bytes.data(), bytes.size());
    copy->Modified = from.Node->Modified;
    copy->Attributes = 0;
}

void FakeFiles::CopyAllToNew(const std::wstring& source, const std::vector<std::wstring>& names,
                             const std::wstring& destination, const Copied& copied) {
    constexpr std::size_t Writers = 2;
    const auto copy = [&](const std::wstring& name) {
        return CodeOf([&] { CopyToNew(source + L'\\' + name, destination + L'\\' + name); });
    };
    for (std::size_t start = 0; start < names.size(); start += Writers) {
        std::vector<std::pair<std::wstring, std::uint32_t>> done;
        for (std::size_t i = std::min(start + Writers, names.size()); i-- > start;) {
            done.emplace_back(names[i], copy(names[i]));
        }
        for (const auto& [name, code] : done) {
            copied(name, code);
        }
    }
}

void FakeFiles::Move(const std::wstring& source, const std::wstring& destination) {
    faults_.Check("Files.Move", source);
    const FileTree::Place from = FileAt("Move", source);
    const FileTree::Place to = WritablePlace(tree_, "Move", destination);
    RefuseWhen(from.Drive->ReadOnly, "Move", source, errors::AccessDenied);
    RefuseWhen(from.Drive != to.Drive, "Move", destination, NotSameDevice);
    RefuseWhen(from.Node->OpenHandles > 0, "Move", source, errors::SharingViolation);
    const bool replaces = to.Node && to.Node != from.Node;
    if (replaces) {
        const bool replaceable = to.Node->Kind == NodeKind::File && !IsReadOnly(*to.Node) && to.Node->OpenHandles == 0;
        RefuseWhen(!replaceable, "Move", destination, errors::AccessDenied);
        tree_.Detach(to);
    }
    from.Node->Flush();
    from.Parent->Children.erase(ToUpper(from.Leaf));
    from.Node->Name = to.Leaf;
    to.Parent->Children[ToUpper(to.Leaf)] = from.Node;
}

void FakeFiles::Remove(const std::wstring& path) {
    faults_.Check("Files.Remove", path);
    const FileTree::Place place = FileAt("Remove", path);
    RefuseWhen(place.Drive->ReadOnly || IsReadOnly(*place.Node), "Remove", path, errors::AccessDenied);
    RefuseWhen(place.Node->OpenHandles > 0, "Remove", path, errors::SharingViolation);
    tree_.Detach(place);
}

bool FakeFiles::IsInUse(const std::wstring& path) {
    const std::shared_ptr<FileNode> node = tree_.Find(path);
    return !faults_.Fails("Files.IsInUse") && node && node->OpenHandles > 0;
}

std::string FakeFiles::Read(const std::wstring& path, std::uint64_t limit) {
    faults_.Check("Files.Read", path);
    const std::string& bytes = FileAt("Read", path).Node->Bytes;
    return bytes.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(limit, bytes.size())));
}

void FakeFiles::ReadThrough(const std::wstring& path) {
    faults_.Check("Files.ReadThrough", path);
    FileAt("ReadThrough", path);
}

void FakeFiles::Write(const std::wstring& path, const std::string& bytes) {
    Put("Write", path, bytes, false);
}

void FakeFiles::Append(const std::wstring& path, const std::string& bytes) {
    Put("Append", path, bytes, true);
}

void FakeFiles::Put(const char* operation, const std::wstring& path, const std::string& bytes, bool append) {
    const Faults::Verdict verdict = faults_.Next(std::string("Files.") + operation);
    RefuseWhen(verdict != Faults::Verdict::Cut && Faults::Answer(verdict), operation, path, errors::AccessDenied);
    const FileTree::Place place = WritablePlace(tree_, operation, path);
    if (place.Node) {
        const bool writable = place.Node->Kind == NodeKind::File && !IsReadOnly(*place.Node);
        RefuseWhen(!writable, operation, path, errors::AccessDenied);
        RefuseWhen(place.Node->OpenHandles > 0, operation, path, errors::SharingViolation);
    }
    RefuseWhen(bytes.size() > place.Drive->FreeBytes, operation, path, errors::DiskFull);
    const std::shared_ptr<FileNode> node = place.Node ? place.Node : tree_.AddChild(place, NodeKind::File);
    const std::size_t start = append ? node->Bytes.size() : 0;
    node->Resize(start);
    if (verdict == Faults::Verdict::Cut) {
        node->Write(start, bytes.data(), bytes.size() / 2);
        RefuseWhen(Faults::Answer(verdict), operation, path, errors::AccessDenied);
    }
    node->Write(start, bytes.data(), bytes.size());
}

bool FakeFolders::Exists(const std::wstring& folder) {
    return !faults_.Fails("Folders.Exists") && tree_.HasFolder(folder);
}

bool FakeFolders::IsLink(const std::wstring& folder) {
    const FileTree::Place place = tree_.Locate(folder, false);
    return !faults_.Fails("Folders.IsLink") && place.Node && place.Node->Kind == NodeKind::Link;
}

void FakeFolders::Create(const std::wstring& folder) {
    faults_.Check("Folders.Create", folder);
    RefuseWhen(tree_.Find(folder) != nullptr, "Create", folder, errors::AlreadyExists);
    tree_.AddChild(WritablePlace(tree_, "Create", folder), NodeKind::Folder);
}

FolderListing FakeFolders::List(const std::wstring& folder) {
    faults_.Check("Folders.List", folder);
    const FileTree::Place place = tree_.Locate(folder);
    const bool isFolder = place.Node && place.Node->Kind == NodeKind::Folder;
    RefuseWhen(!isFolder, "List", folder, errors::PathNotFound);
    RefuseWhen(tree_.IsDenied(folder), "List", folder, errors::AccessDenied);
    FolderListing listing;
    for (const auto& [key, child] : place.Node->Children) {
        const NodeKind kind = child->Kind;
        auto& names = kind == NodeKind::Link     ? listing.Links
                      : kind == NodeKind::Folder ? listing.Subfolders
                                                 : listing.Files;
        names.push_back(child->Name);
    }
    return listing;
}

std::wstring FakeVolumes::DriveName(const std::wstring& path) {
    faults_.CheckPower();
    return DriveNameOf(path);
}

const FakeDrive& FakeVolumes::DriveAt(const char* operation, const std::wstring& root) {
    faults_.Check(std::string("Volumes.") + operation, root);
    const FileTree::Place place = tree_.Locate(root);
    RefuseWhen(!place.Node, operation, root, place.Code);
    return *place.Drive;
}

double FakeVolumes::FreeBytes(const std::wstring& root) {
    const FakeDrive& drive = DriveAt("FreeBytes", root);
    return drive.ReadOnly ? 0.0 : static_cast<double>(drive.FreeBytes);
}

std::wstring FakeVolumes::FileSystemName(const std::wstring& root) {
    return DriveAt("FileSystemName", root).FileSystem;
}

void FakeVolumes::Flush(const std::wstring& folder) {
    faults_.Check("Volumes.Flush", folder);
    const FileTree::Place place = tree_.Locate(folder);
    RefuseWhen(!place.Node, "Flush", folder, place.Code);
    place.Node->Flush();
}

}  // namespace mip
