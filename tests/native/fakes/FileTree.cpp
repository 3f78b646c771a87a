#include "tests/native/fakes/FileTree.h"

#include <algorithm>

#include "platform/DriveName.h"
#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t NotReady = 21;
constexpr std::uint32_t CannotResolveName = 1921;
constexpr std::size_t PageSize = 4096;

void CollectFiles(const FileNode& folder, const std::wstring& path, std::map<std::wstring, std::string>& result) {
    if (folder.Children.empty()) {
        result[path + L"\\"];
    }
    for (const auto& [key, child] : folder.Children) {
        const std::wstring childPath = path + L"\\" + child->Name;
        if (child->Kind == NodeKind::Folder) {
            CollectFiles(*child, childPath, result);
        } else {
            result[childPath] = child->Bytes;
        }
    }
}

std::uint64_t SizeBelow(const FileNode& node) {
    std::uint64_t size = node.Bytes.size();
    for (const auto& [key, child] : node.Children) {
        size += SizeBelow(*child);
    }
    return size;
}

}  // namespace

std::size_t FileNode::Read(std::uint64_t offset, void* buffer, std::size_t size) const {
    const std::size_t start = static_cast<std::size_t>(std::min<std::uint64_t>(offset, Bytes.size()));
    return Bytes.copy(static_cast<char*>(buffer), size, start);
}

void FileNode::Write(std::uint64_t offset, const void* data, std::size_t size) {
    Resize(std::max<std::uint64_t>(Bytes.size(), offset + size));
    Bytes.replace(static_cast<std::size_t>(offset), size, static_cast<const char*>(data), size);
}

void FileNode::Resize(std::uint64_t size) {
    const std::uint64_t room = drive_->FreeBytes + Bytes.size();
    if (drive_->ReadOnly || size > room) {
        throw PlatformError("Write", Name, drive_->ReadOnly ? errors::AccessDenied : errors::DiskFull);
    }
    if (!flushed_) {
        flushed_ = Bytes;
    }
    drive_->FreeBytes = room - size;
    Bytes.resize(static_cast<std::size_t>(size));
    Modified = tree_->Now();
    Attributes |= attributes::Archive;
}

void FileNode::Flush() {
    flushed_.reset();
    for (const auto& [key, child] : Children) {
        child->Flush();
    }
}

std::vector<std::wstring> FileTree::PartsOf(const std::wstring& path, bool asKeys) {
    std::wstring text = asKeys ? ToUpper(path) : path;
    std::ranges::replace(text, L'/', L'\\');
    const std::wstring drive = DriveNameOf(text);
    std::vector<std::wstring> parts{ToUpper(drive)};
    for (const std::wstring& name : Split(std::wstring_view(text).substr(drive.size()), L'\\')) {
        if (name == L"..") {
            parts.resize(std::max<std::size_t>(parts.size() - 1, 1));
        } else if (!name.empty() && name != L".") {
            parts.push_back(name);
        }
    }
    return parts;
}

FakeDrive& FileTree::AddDrive(FakeDrive drive) {
    Volume& volume = volumes_[ToUpper(drive.Name)];
    volume.Drive = std::make_unique<FakeDrive>(std::move(drive));
    volume.Root = std::make_shared<FileNode>();
    volume.Root->tree_ = this;
    volume.Root->drive_ = volume.Drive.get();
    return *volume.Drive;
}

FileTree::Place FileTree::Walk(const std::wstring& path, bool followLast, int depth) {
    const std::vector<std::wstring> parts = PartsOf(path, false);
    const auto volume = volumes_.find(parts.front());
    if (volume == volumes_.end() || depth > 8) {
        return {.Code = depth > 8 ? CannotResolveName : errors::PathNotFound};
    }
    Place place{.Node = volume->second.Root, .Drive = volume->second.Drive.get()};
    if (!place.Drive->Present) {
        return {.Drive = place.Drive, .Code = NotReady};
    }
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (!place.Node || place.Node->Kind == NodeKind::File) {
            return {.Leaf = parts[i], .Drive = place.Drive, .Code = errors::PathNotFound};
        }
        place.Parent = place.Node;
        place.Leaf = parts[i];
        const auto child = place.Parent->Children.find(ToUpper(place.Leaf));
        place.Node = child == place.Parent->Children.end() ? nullptr : child->second;
        if (place.Node && place.Node->Kind == NodeKind::Link && (i + 1 < parts.size() || followLast)) {
            place.Node = Walk(place.Node->LinkTarget, true, depth + 1).Node;
        }
    }
    const bool badName = place.Leaf.find_first_of(L"*?\"<>|:") != std::wstring::npos;
    if (badName || (place.Node && place.Node->Kind == NodeKind::File && path.ends_with(L'\\'))) {
        place.Node = nullptr;
        place.Code = errors::InvalidName;
    } else if (!place.Node) {
        place.Code = errors::FileNotFound;
    }
    return place;
}

std::shared_ptr<FileNode> FileTree::AddChild(const Place& place, NodeKind kind) {
    auto node = std::make_shared<FileNode>();
    node->Name = place.Leaf;
    node->Kind = kind;
    node->Modified = Now();
    node->Attributes = kind == NodeKind::File ? attributes::Archive : 0;
    node->tree_ = this;
    node->drive_ = place.Parent->drive_;
    place.Parent->Children[ToUpper(place.Leaf)] = node;
    return node;
}

void FileTree::Detach(const Place& place) {
    place.Node->drive_->FreeBytes += SizeBelow(*place.Node);
    place.Parent->Children.erase(ToUpper(place.Leaf));
}

FileNode& FileTree::Make(const std::wstring& path, NodeKind kind) {
    const std::vector<std::wstring> parts = PartsOf(path, false);
    std::wstring folder = parts.front();
    for (std::size_t i = 1; i + 1 < parts.size(); ++i) {
        folder += L"\\" + parts[i];
        if (const Place place = Locate(folder); !place.Node) {
            AddChild(place, NodeKind::Folder);
        }
    }
    const Place place = Locate(path);
    if (!place.Parent) {
        throw PlatformError("Put", path, errors::PathNotFound);
    }
    if (place.Node) {
        Detach(place);
    }
    return *AddChild(place, kind);
}

FileNode& FileTree::PutFile(const std::wstring& path, const std::string& bytes, std::uint32_t bits) {
    FileNode& node = Make(path, NodeKind::File);
    node.Bytes = bytes;
    node.Attributes = bits;
    node.drive_->FreeBytes -= std::min<std::uint64_t>(node.drive_->FreeBytes, bytes.size());
    return node;
}

FileNode& FileTree::PutFolder(const std::wstring& path) {
    const std::shared_ptr<FileNode> existing = Find(path);
    return existing ? *existing : Make(path, NodeKind::Folder);
}

FileNode& FileTree::PutLink(const std::wstring& path, const std::wstring& target) {
    FileNode& link = Make(path, NodeKind::Link);
    link.LinkTarget = target;
    return link;
}

std::string FileTree::BytesOf(const std::wstring& path) {
    if (!HasFile(path)) {
        throw PlatformError("BytesOf", path, errors::FileNotFound);
    }
    return Find(path)->Bytes;
}

std::map<std::wstring, std::string> FileTree::Snapshot(const std::wstring& folder) {
    std::map<std::wstring, std::string> result;
    if (HasFolder(folder)) {
        CollectFiles(*Find(folder), folder.substr(0, folder.find_last_not_of(L'\\') + 1), result);
    }
    return result;
}

void FileTree::SettleAfterPowerCut(Unflushed unflushed) {
    for (const auto& [name, volume] : volumes_) {
        Settle(*volume.Root, unflushed);
    }
}

void FileTree::Settle(FileNode& node, Unflushed unflushed) {
    if (node.flushed_ && unflushed != Unflushed::Kept) {
        std::string& bytes = node.Bytes;
        std::string before = *node.flushed_;
        if (unflushed == Unflushed::Lost) {
            bytes = before;
        }
        before.resize(bytes.size());
        for (std::size_t start = 0; start < bytes.size(); start += 2 * PageSize) {
            bytes.replace(start, PageSize, before, start, PageSize);
        }
    }
    node.flushed_.reset();
    for (const auto& [key, child] : node.Children) {
        Settle(*child, unflushed);
    }
}

}  // namespace mip
