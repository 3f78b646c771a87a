#include "tests/native/fakes/FakeArchives.h"

#include <algorithm>

#include "platform/Clusters.h"
#include "platform/archive/BadArchive.h"
#include "platform/archive/EntryName.h"
#include "platform/archive/SevenZipCommand.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::int32_t SevenZipFatal = 2;
constexpr std::uint32_t InvalidParameter = 87;
constexpr std::uint32_t NoVersionResource = 1813;
constexpr std::uint32_t NoProvider = 0x800A0E7A;

bool IsFolder(const std::wstring& entry) {
    return entry.ends_with(L'\\');
}

/// Throws when there is no entry, two want one name, or a file's name is wanted for a folder.
void CheckNames(const FakeArchives::Entries& entries) {
    if (entries.empty()) {
        throw BadArchive("counting the archive's entries", L"none");
    }
    std::map<std::wstring, bool> isFolder;
    for (const auto& [name, bytes] : entries) {
        if (!isFolder.emplace(ToUpper(CheckedEntryName(name)), IsFolder(name)).second) {
            throw BadArchive("telling the entries' names apart", name);
        }
    }
    for (const auto& [name, folder] : isFolder) {
        for (std::size_t end = name.find(L'\\'); end != name.npos; end = name.find(L'\\', end + 1)) {
            const auto parent = isFolder.find(name.substr(0, end));
            if (parent != isFolder.end() && !parent->second) {
                throw BadArchive("making a folder of a file", name);
            }
        }
    }
}

ArchiveFacts FactsOf(const FakeArchives::Entries& entries) {
    ArchiveFacts facts;
    std::map<std::wstring, bool> isFilled;
    for (const auto& [name, bytes] : entries) {
        const std::size_t top = name.find(L'\\');
        if (top != name.npos) {
            bool& filled = isFilled[ToUpper(name.substr(0, top))];
            filled = filled || !IsFolder(name);
        }
        facts.Files += IsFolder(name) ? 0 : 1;
        facts.BytesOnDrive += SizeInClusters(bytes.size());
    }
    facts.HoldsManual =
        !isFilled.empty() && std::ranges::all_of(isFilled, [](const auto& folder) { return folder.second; });
    return facts;
}

}  // namespace

const FakeArchives::Archive& FakeArchives::Approved(const std::wstring& commandLine) {
    const auto command = ParseSevenZipCommand(commandLine);
    if (!command) {
        throw PlatformError("reading an extraction's command line", commandLine, InvalidParameter);
    }
    const auto archive = archives_.find(ToUpper(command->Archive));
    if (archive == archives_.end() || !tree_.HasFile(command->Archive)) {
        throw PlatformError("opening an archive", command->Archive, errors::FileNotFound);
    }
    CheckNames(archive->second.Content);
    return archive->second;
}

std::int32_t FakeArchives::SevenZip(const std::wstring& commandLine, FaultLog& log) {
    if (faults_.Fails("Archives.SevenZip")) {
        return SevenZipFatal;
    }
    CommandLines.push_back(commandLine);
    if (OnSevenZip) {
        return OnSevenZip(commandLine);
    }
    try {
        const Archive& archive = Approved(commandLine);
        Extract(archive, ParseSevenZipCommand(commandLine)->OutputFolder);
        return 0;
    } catch (const PlatformError& error) {
        log.Trapped("extracting an archive", error);
        return SevenZipFatal;
    }
}

void FakeArchives::Extract(const Archive& archive, const std::wstring& folder) {
    CreateWithParents(folder);
    std::size_t left = archive.Broken ? archive.Content.size() / 2 : archive.Content.size();
    for (const auto& [name, bytes] : archive.Content) {
        if (left-- == 0) {
            throw BadArchive("completing an entry", name);
        }
        const std::wstring path = folder + L'\\' + name;
        CreateWithParents(path.substr(0, path.rfind(L'\\')));
        if (!IsFolder(name)) {
            if (const auto existing = tree_.Find(path)) {
                existing->Attributes &= ~attributes::ReadOnly;
            }
            files_.Write(path, bytes);
        }
    }
}

void FakeArchives::CreateWithParents(const std::wstring& folder) {
    if (tree_.HasFolder(folder)) {
        return;
    }
    const std::size_t parent = folder.rfind(L'\\');
    if (parent != folder.npos) {
        CreateWithParents(folder.substr(0, parent));
    }
    folders_.Create(folder);
}

ArchiveFacts FakeArchives::Inspect(const std::wstring& commandLine) {
    faults_.Check("Archives.Inspect", commandLine);
    return FactsOf(Approved(commandLine).Content);
}

ArchiveFacts FakeArchives::Test(const std::wstring& commandLine) {
    faults_.Check("Archives.Test", commandLine);
    const Archive& archive = Approved(commandLine);
    if (archive.Broken) {
        throw BadArchive("completing an entry", commandLine);
    }
    return FactsOf(archive.Content);
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
