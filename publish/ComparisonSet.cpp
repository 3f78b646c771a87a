#include "publish/ComparisonSet.h"

#include <exception>
#include <functional>
#include <set>
#include <stdexcept>

#include "catalogue/modCarInfo.h"
#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/ZipReader.h"
#include "publish/DiscPlatform.h"
#include "publish/FileTools.h"
#include "publish/PathText.h"
#include "text/Checked.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr unsigned Utf8CodePage = 65001;
constexpr std::wstring_view Contents = L"contents/";

/// Takes a file of the edition before: its name below the manual's folder, and its bytes.
using VisitFile = std::function<void(const std::wstring& name, const NextBytes& bytes)>;

void VisitPages(const fs::path& folder, const VisitFile& visit) {
    for (const ManualFile& file : ListManualFiles(folder)) {
        if (file.Name != L"car_info.ci" && !file.Name.starts_with(L"install/")) {
            FileBytes bytes(file.Source);
            visit(file.Name, [&] { return bytes.Next(); });
        }
    }
}

void VisitArchive(const fs::path& archive, const VisitFile& visit) {
    const auto bytes = OpenArchiveFile(archive);
    ZipReader reader(*bytes, Utf8CodePage);
    while (reader.Next()) {
        const std::wstring name = reader.Name();
        if (!reader.IsFolder()) {
            visit(name.substr(name.find(L'/') + 1), [&] { return reader.Data(); });
        }
    }
}

void VisitEdition(const fs::path& folder, const VisitFile& visit) {
    const fs::path archive = folder / "install" / "condense" / "manual.zip";
    if (!fs::is_directory(folder / "contents") && fs::is_regular_file(archive)) {
        VisitArchive(archive, visit);
    } else {
        VisitPages(folder, visit);
    }
}

bool IsJustBefore(const DiscCatalogueRecord& before, const DiscCatalogueRecord& manual) {
    try {
        return TextToInt16(before.Version) + 1 == TextToInt16(manual.Version);
    } catch (const std::exception&) {
        return false;  // the earlier disc has a version that is no number
    }
}

}  // namespace

EarlierEditions::EarlierEditions(const fs::path& base) : base_(base) {
    if (!fs::is_directory(base)) {
        throw std::runtime_error(Utf8Of(base) + " is no folder");
    }
    DiscProgram disc(base);
    Program& program = disc.Program;
    for (const std::wstring& folder : program.Platform.Folders.List(program.Paths.DiscRootPath).Subfolders) {
        if (HasCatalogueFile(program.Platform, program.Paths, folder)) {
            // Whether that disc was in order is not asked; the values are read in any case.
            (void)ReadCatalogueRecord(program, folder);
            DiscCatalogueRecord& record = program.DiscCatalogue.Records.back();
            record.FolderName = folder;
            byPubNo_[ToUpper(record.Pub_No)] = record;
        }
    }
}

std::optional<fs::path> EarlierEditions::Before(const DiscCatalogueRecord& manual) const {
    const auto found = byPubNo_.find(ToUpper(manual.Pub_No));
    if (found != byPubNo_.end()) {
        const DiscCatalogueRecord& before = found->second;
        return IsJustBefore(before, manual) ? std::optional(base_ / PathOf(before.FolderName)) : std::nullopt;
    }
    const fs::path folder = base_ / PathOf(manual.FolderName);
    const bool isPlain = fs::is_directory(folder) && !fs::exists(folder / "car_info.ci");
    return isPlain ? std::optional(folder) : std::nullopt;
}

EditionChanges CompareEditions(const std::vector<ManualFile>& files, const fs::path& before) {
    std::map<std::wstring, fs::path> sources;
    for (const ManualFile& file : files) {
        sources[file.Name] = file.Source;
    }
    EditionChanges changes;
    std::set<std::wstring> same;
    VisitEdition(before, [&](const std::wstring& name, const NextBytes& bytes) {
        const auto found = sources.find(name);
        if (found == sources.end()) {
            changes.Obstacle = "the edition before also has " + ToUtf8(name);
        } else if (HoldsBytes(found->second, bytes)) {
            same.insert(name);
        }
    });
    for (const ManualFile& file : files) {
        if (same.contains(file.Name)) {
            continue;
        }
        if (file.Name.starts_with(Contents)) {
            changes.Changed.push_back(file);
        } else {
            changes.Obstacle = ToUtf8(file.Name) + ", outside of contents, is not the edition's before";
        }
    }
    return changes;
}

}  // namespace mip
