#include "tests/native/fakes/FileTree.h"

#include <algorithm>
#include <optional>

#include "platform/PlatformError.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t NotReady = 21;
constexpr std::uint32_t CannotResolveName = 1921;
constexpr std::size_t PageSize = 4096;

struct PathParts {
    std::wstring Drive;  ///< upper-cased "C:" or "\\SERVER\SHARE"
    std::vector<std::wstring> Components;
    bool TrailingSeparator = false;
};

std::vector<std::wstring> Components(std::wstring_view text) {
    std::vector<std::wstring> result;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find(L'\\', start), text.size());
        const std::wstring part(text.substr(start, end - start));
        start = end + 1;
        if (part == L"..") {
            if (!result.empty()) {
                result.pop_back();
            }
        } else if (!part.empty() && part != L".") {
            result.push_back(part);
        }
    }
    return result;
}

std::optional<PathParts> ParsePath(std::wstring path) {
    std::replace(path.begin(), path.end(), L'/', L'\\');
    PathParts parts;
    std::size_t rest = 2;
    if (path.starts_with(L"\\\\")) {
        const std::size_t server = path.find(L'\\', 2);
        if (server == std::wstring::npos || server == 2) {
            return std::nullopt;
        }
        rest = std::min(path.find(L'\\', server + 1), path.size());
        if (rest == server + 1) {
            return std::nullopt;
        }
    } else if (path.size() < 2 || path[1] != L':') {
        return std::nullopt;
    }
    parts.Drive = ToUpper(path.substr(0, rest));
    parts.Components = Components(std::wstring_view(path).substr(rest));
    parts.TrailingSeparator = !parts.Components.empty() && path.back() == L'\\';
    return parts;
}

std::wstring CanonicalPath(const std::wstring& path) {
    const std::optional<PathParts> parts = ParsePath(path);
    if (!parts) {
        return ToUpper(path);
    }
    std::wstring result = parts->Drive;
    for (const std::wstring& component : parts->Components) {
        result += L'\\' + ToUpper(component);
    }
    return result;
}

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
    if (offset >= Bytes.size()) {
        return 0;
    }
    return Bytes.copy(static_cast<char*>(buffer), size, static_cast<std::size_t>(offset));
}

void FileNode::Write(std::uint64_t offset, const void* data, std::size_t size) {
    Resize(std::max<std::uint64_t>(Bytes.size(), offset + size));
    Bytes.replace(static_cast<std::size_t>(offset), size, static_cast<const char*>(data), size);
}

void FileNode::Resize(std::uint64_t size) {
    if (drive_->ReadOnly) {
        throw PlatformError("Write", Name, errors::AccessDenied);
    }
    const std::uint64_t room = drive_->FreeBytes + Bytes.size();
    if (size > room) {
        throw PlatformError("Write", Name, errors::DiskFull);
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

FakeDrive& FileTree::AddDrive(FakeDrive drive) {
    Volume& volume = volumes_[ToUpper(drive.Name)];
    volume.Drive = std::make_unique<FakeDrive>(std::move(drive));
    volume.Root = std::make_shared<FileNode>();
    volume.Root->tree_ = this;
    volume.Root->drive_ = volume.Drive.get();
    return *volume.Drive;
}

FakeDrive* FileTree::DriveOf(const std::wstring& path) {
    return Locate(path).Drive;
}

FileTree::Place FileTree::Locate(const std::wstring& path, bool followLast) {
    return Walk(path, followLast, 0);
}

FileTree::Place FileTree::Walk(const std::wstring& path, bool followLast, int depth) {
    Place place;
    const std::optional<PathParts> parts = ParsePath(path);
    const auto volume = parts ? volumes_.find(parts->Drive) : volumes_.end();
    if (volume == volumes_.end() || depth > 8) {
        place.Code = depth > 8 ? CannotResolveName : errors::PathNotFound;
        return place;
    }
    place.Drive = volume->second.Drive.get();
    place.Node = volume->second.Root;
    if (!place.Drive->Present) {
        place.Node = nullptr;
        place.Code = NotReady;
        return place;
    }
    for (std::size_t i = 0; i < parts->Components.size(); ++i) {
        const std::wstring& name = parts->Components[i];
        const bool last = i + 1 == parts->Components.size();
        if (!place.Node || place.Node->Kind == NodeKind::File) {
            return Place{nullptr, nullptr, name, place.Drive, errors::PathNotFound};
        }
        place.Parent = place.Node;
        place.Leaf = name;
        const auto child = place.Parent->Children.find(ToUpper(name));
        place.Node = child == place.Parent->Children.end() ? nullptr : child->second;
        if (place.Node && place.Node->Kind == NodeKind::Link && (!last || followLast)) {
            place.Node = Walk(place.Node->LinkTarget, true, depth + 1).Node;
        }
    }
    const bool badName = place.Leaf.find_first_of(L"*?\"<>|:") != std::wstring::npos;
    const bool fileAsFolder = parts->TrailingSeparator && place.Node && place.Node->Kind == NodeKind::File;
    if (badName || fileAsFolder) {
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

std::shared_ptr<FileNode> FileTree::MakeParents(const std::wstring& path) {
    const std::optional<PathParts> parts = ParsePath(path);
    if (!parts || !volumes_.contains(parts->Drive)) {
        throw PlatformError("PutFile", path, errors::PathNotFound);
    }
    std::wstring folder = parts->Drive + L"\\";
    for (std::size_t i = 0; i + 1 < parts->Components.size(); ++i) {
        folder += parts->Components[i];
        const Place place = Locate(folder);
        if (!place.Node) {
            AddChild(place, NodeKind::Folder);
        }
        folder += L"\\";
    }
    return Locate(folder).Node;
}

FileNode& FileTree::PutFile(const std::wstring& path, const std::string& bytes, std::uint32_t bits) {
    MakeParents(path);
    const Place place = Locate(path);
    if (place.Node) {
        Detach(place);
    }
    const std::shared_ptr<FileNode> node = AddChild(place, NodeKind::File);
    node->Bytes = bytes;
    node->Attributes = bits;
    node->drive_->FreeBytes -= std::min<std::uint64_t>(node->drive_->FreeBytes, bytes.size());
    return *node;
}

FileNode& FileTree::PutFolder(const std::wstring& path) {
    MakeParents(path);
    const Place place = Locate(path);
    return place.Node ? *place.Node : *AddChild(place, NodeKind::Folder);
}

FileNode& FileTree::PutLink(const std::wstring& path, const std::wstring& target) {
    MakeParents(path);
    FileNode& link = *AddChild(Locate(path, false), NodeKind::Link);
    link.LinkTarget = target;
    return link;
}

void FileTree::Erase(const std::wstring& path) {
    const Place place = Locate(path, false);
    if (place.Node && place.Parent) {
        Detach(place);
    }
}

void FileTree::Deny(const std::wstring& path) {
    denied_.insert(CanonicalPath(path));
}
bool FileTree::IsDenied(const std::wstring& path) const {
    return denied_.contains(CanonicalPath(path));
}

std::shared_ptr<FileNode> FileTree::Find(const std::wstring& path) {
    return Locate(path).Node;
}

bool FileTree::HasFile(const std::wstring& path) {
    const std::shared_ptr<FileNode> node = Find(path);
    return node && node->Kind == NodeKind::File;
}

bool FileTree::HasFolder(const std::wstring& path) {
    const std::shared_ptr<FileNode> node = Find(path);
    return node && node->Kind == NodeKind::Folder;
}

std::string FileTree::BytesOf(const std::wstring& path) {
    const std::shared_ptr<FileNode> node = Find(path);
    if (!node || node->Kind != NodeKind::File) {
        throw PlatformError("BytesOf", path, errors::FileNotFound);
    }
    return node->Bytes;
}

std::map<std::wstring, std::string> FileTree::Snapshot(const std::wstring& folder) {
    std::map<std::wstring, std::string> result;
    const std::shared_ptr<FileNode> node = Find(folder);
    if (node && node->Kind == NodeKind::Folder) {
        CollectFiles(*node, folder.ends_with(L'\\') ? folder.substr(0, folder.size() - 1) : folder, result);
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
