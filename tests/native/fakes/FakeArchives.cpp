#include "tests/native/fakes/FakeArchives.h"

#include "platform/Clusters.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::int32_t SevenZipFatal = 2;
constexpr std::uint32_t NoVersionResource = 1813;
constexpr std::uint32_t NoProvider = 0x800A0E7A;
constexpr std::wstring_view Extract = L"x -aoa -hide ";

}  // namespace

FakeArchives::Archive* FakeArchives::Find(const std::wstring& path) {
    const auto archive = archives_.find(ToUpper(path));
    return archive != archives_.end() && tree_.HasFile(path) ? &archive->second : nullptr;
}

std::int32_t FakeArchives::SevenZip(const std::wstring& commandLine) {
    if (faults_.Fails("Archives.SevenZip")) {
        return SevenZipFatal;
    }
    CommandLines.push_back(commandLine);
    if (OnSevenZip) {
        return OnSevenZip(commandLine);
    }
    const std::size_t folderStart = commandLine.rfind(L" \"");
    if (!commandLine.starts_with(Extract) || folderStart < Extract.size() || folderStart == std::wstring::npos) {
        return SevenZipFatal;
    }
    std::wstring path = commandLine.substr(Extract.size(), folderStart - Extract.size());
    std::erase(path, L'"');
    std::wstring folder = commandLine.substr(folderStart + 1);
    std::erase(folder, L'"');
    const Archive* archive = Find(path);
    if (!archive) {
        return SevenZipFatal;
    }
    std::size_t left = archive->Broken ? archive->Content.size() / 2 : archive->Content.size();
    for (const auto& [name, bytes] : archive->Content) {
        if (left-- == 0) {
            break;
        }
        tree_.PutFile(folder + name, bytes);
    }
    return archive->Broken ? SevenZipFatal : 0;
}

bool FakeArchives::IsWhole(const std::wstring& archive) {
    const Archive* found = Find(archive);
    return !faults_.Fails("Archives.IsWhole") && found && !found->Broken && !found->Content.empty();
}

std::uint64_t FakeArchives::DeclaredSize(const std::wstring& archive) {
    faults_.Check("Archives.DeclaredSize", archive);
    const Archive* found = Find(archive);
    if (!found) {
        throw PlatformError("DeclaredSize", archive, errors::FileNotFound);
    }
    std::uint64_t size = 0;
    for (const auto& [name, bytes] : found->Content) {
        size += SizeInClusters(bytes.size());
    }
    return size;
}

void FakeArchives::Put(const std::wstring& path, Entries entries) {
    tree_.PutFile(path, "PK\x03\x04");
    archives_[ToUpper(path)] = {std::move(entries), false};
}

void FakeArchives::Break(const std::wstring& path) {
    archives_.at(ToUpper(path)).Broken = true;
}

FixedFileVersion FakeFileVersions::Read(const std::wstring& path) {
    faults_.Check("FileVersions.Read", path);
    const auto version = versions_.find(ToUpper(path));
    if (version == versions_.end()) {
        throw PlatformError("Read", path, NoVersionResource);
    }
    return version->second;
}

void FakeFileVersions::Put(const std::wstring& path, FixedFileVersion version) {
    versions_[ToUpper(path)] = version;
}

std::unique_ptr<DatabaseConnection> SettableEngine::Open(const std::wstring& path) {
    faults_.Check("DatabaseEngine.Open", path);
    if (!Engine) {
        throw PlatformError("Open", path, NoProvider);
    }
    return Engine->Open(path);
}

}  // namespace mip
