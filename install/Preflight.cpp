#include "install/Preflight.h"

#include <algorithm>
#include <exception>
#include <functional>

#include "app/Attempt.h"
#include "app/Failure.h"
#include "app/ManualPlace.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/PublicationNumber.h"
#include "app/modFile.h"
#include "app/modFolderCopy.h"
#include "app/modPdf.h"
#include "catalogue/modMDB.h"
#include "install/modUnZip.h"
#include "platform/Archives.h"
#include "platform/Clusters.h"
#include "platform/Files.h"
#include "text/TextTools.h"

namespace mip {

namespace {

/// Calls `visit` with the path below the folder ("\\contents\\index.html") of every file, until it returns false.
/// Throws PlatformError when a folder cannot be listed.
void VisitFiles(Platform& platform, const std::wstring& folder, const std::function<bool(const std::wstring&)>& visit) {
    std::vector<std::wstring> open{L""};
    while (!open.empty()) {
        const std::wstring current = open.back();
        open.pop_back();
        const FolderListing listing = platform.Folders.List(folder + current);
        for (const std::wstring& name : listing.Files) {
            if (!visit(current + L'\\' + name)) {
                return;
            }
        }
        for (const std::wstring& name : listing.Subfolders) {
            open.push_back(current + L'\\' + name);
        }
    }
}

/// Bytes that recording a manual may take beside the catalogue, for its journal and its growth.
constexpr double CatalogueBytes = 256 * 1024;

double BytesOnDrive(Platform& platform, const std::wstring& file) {
    return static_cast<double>(SizeInClusters(platform.Files.Status(file).Size));
}

/// Bytes that all files below a folder take on a drive; 0 when there is no such folder. Throws PlatformError.
double FolderBytes(Platform& platform, const std::wstring& folder) {
    double bytes = 0;
    if (platform.Folders.Exists(folder)) {
        VisitFiles(platform, folder, [&](const std::wstring& file) {
            bytes += BytesOnDrive(platform, folder + file);
            return true;
        });
    }
    return bytes;
}

void AddBytes(const Platform& platform, BytesByDrive& bytes, const std::wstring& path, double more) {
    bytes[ToUpper(platform.Volumes.DriveName(path))] += more;
}

BytesByDrive FreeBytes(const Platform& platform, const BytesByDrive& needed) {
    BytesByDrive free;
    for (const auto& [drive, bytes] : needed) {
        if (!drive.empty()) {
            free[drive] = platform.Volumes.FreeBytes(drive + L"\\");
        }
    }
    return free;
}

/// True when the archive's folder is going to lie at `placed` by one rename: it can be renamed there, and nothing is
/// there, or nothing but an edition that goes.
bool IsGoingToBeMoved(const Program& program, const ManualFacts& facts, const std::wstring& placed) {
    const auto goes = [&](const std::optional<ReplacedEdition>& edition) {
        return edition && edition->MayGo && ToUpper(edition->Folder) == ToUpper(placed);
    };
    return CanMoveIntoPlace(program, placed) &&
           (!program.Platform.Folders.Exists(placed) || goes(facts.Installed) || goes(facts.Base));
}

/// Bytes that the manual takes: a PDF manual's files once, an archive's contents where they are extracted and, when
/// they are going to be copied from there, where the manual goes.
BytesByDrive NeededBytes(const Program& program, const DiscCatalogueRecord& manual, const std::wstring& root,
                         const ManualFacts& facts) {
    Platform& platform = program.Platform;
    BytesByDrive needed;
    AddBytes(platform, needed, program.Paths.MdbPath, CatalogueBytes);
    if (manual.PdfForm == ManualForm::Pdf) {
        AddBytes(platform, needed, facts.Target, FolderBytes(platform, manual.SourcePath));
        return needed;
    }
    const ArchiveFacts archive = platform.Archives.Inspect(ExtractionOf(program.Paths, manual));
    const auto bytes = static_cast<double>(archive.BytesOnDrive);
    AddBytes(platform, needed, program.Paths.UnZipTempPath, bytes);
    const std::wstring placed = JoinPath(root, archive.OnlyFolder);
    if (archive.OnlyFolder.empty() || !IsGoingToBeMoved(program, facts, placed)) {
        AddBytes(platform, needed, facts.Target, bytes);
    }
    return needed;
}

/// The bytes of the comparison set's files, less those of the files that they replace.
BytesByDrive NeededForDifferences(Platform& platform, const std::wstring& source, const std::wstring& target) {
    BytesByDrive needed;
    VisitFiles(platform, source, [&](const std::wstring& file) {
        const bool replaces = platform.Files.Exists(target + file);
        AddBytes(platform, needed, target,
                 BytesOnDrive(platform, source + file) - (replaces ? BytesOnDrive(platform, target + file) : 0));
        return true;
    });
    return needed;
}

/// What goes counts in the manual's favour, but only a drive that is short makes it worth counting.
void AddRoomForManual(const Program& program, const DiscCatalogueRecord& manual, const std::wstring& root,
                      ManualFacts& facts) {
    Platform& platform = program.Platform;
    BytesByDrive needed = NeededBytes(program, manual, root, facts);
    BytesByDrive free = FreeBytes(platform, needed);
    for (const auto& edition : {facts.Installed, facts.Base}) {
        if (edition && edition->MayGo && !HaveFree(needed, free)) {
            AddBytes(platform, needed, edition->Folder, -FolderBytes(platform, edition->Folder));
        }
    }
    facts.NeededBytes = std::move(needed);
    facts.FreeBytes = std::move(free);
}

void AddRoomForDifferences(Platform& platform, const DiscCatalogueRecord& manual, ManualFacts& facts) {
    BytesByDrive needed = NeededForDifferences(platform, manual.ComparePath, facts.Target);
    facts.FreeBytes = FreeBytes(platform, needed);
    facts.NeededBytes = std::move(needed);
}

/// What cannot be found out about the drives does not stop the manual; extraction or copy will tell.
void LookForRoom(const Platform& platform, const std::function<void()>& look) {
    (void)Attempt(platform.FaultLog, "looking for room on the drives", look);
}

ReplacedEdition EditionIn(const Program& program, const std::wstring& pubNo, const std::wstring& folder) {
    return {pubNo, folder, WhyLeftAlone(program, folder).empty()};
}

std::optional<ReplacedEdition> FindBaseEdition(Program& program, const std::wstring& pubNo) {
    const std::wstring baseEdition = BaseEditionOf(pubNo);
    const Lookup base = baseEdition.empty() ? Lookup{} : FindInstalledRecord(program, baseEdition);
    if (base.Failed()) {
        throw Failure(messages::DatabaseNotOpened, "the catalogue does not answer");
    }
    return base.Found() ? std::optional(EditionIn(program, baseEdition, base.Record.INSPath)) : std::nullopt;
}

void ReadFilesThrough(Platform& platform, const std::wstring& folder) {
    VisitFiles(platform, folder, [&](const std::wstring& file) {
        platform.Files.ReadThrough(folder + file);
        return true;
    });
}

void ReadPdfManual(const Program& program, const DiscCatalogueRecord& manual) {
    const std::wstring pdf = GetRootedManualPdfPath(program.Paths, manual.FolderName, manual.Pub_No);
    if (!program.Platform.Files.Exists(pdf)) {
        throw Failure(messages::ManualFailed, "the disc has no " + ToUtf8(pdf));
    }
    ReadFilesThrough(program.Platform, manual.SourcePath);
}

void ReadArchive(const Program& program, const DiscCatalogueRecord& manual) {
    const ArchiveFacts archive = program.Platform.Archives.Test(ExtractionOf(program.Paths, manual));
    if (!archive.HoldsManual) {
        throw Failure(messages::ManualFailed, "the archive has no folder with a manual in it");
    }
}

/// Does what reads the new edition; its error becomes a failure with `message`.
void RequireReadable(const Platform& platform, std::int16_t message, const std::function<void()>& read) {
    try {
        read();
    } catch (const Failure&) {
        throw;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("reading the new edition", error);
        throw Failure(message, "the new edition cannot be read to its end");
    }
}

}  // namespace

ManualFacts LookAtManual(Program& program, const DiscCatalogueRecord& manual, const std::wstring& root) {
    ManualFacts facts;
    facts.Target = JoinPath(root, manual.FolderName);
    facts.TargetExists = program.Platform.Folders.Exists(facts.Target);
    if (!manual.InstalledPath.empty()) {
        facts.Installed = EditionIn(program, manual.Pub_No, manual.InstalledPath);
    }
    facts.Base = FindBaseEdition(program, manual.Pub_No);
    LookForRoom(program.Platform, [&] { AddRoomForManual(program, manual, root, facts); });
    return facts;
}

ManualFacts LookAtDifferences(Platform& platform, const DiscCatalogueRecord& manual) {
    ManualFacts facts;
    facts.IsDifferential = true;
    facts.Target = JoinPath(manual.InstalledPath, L"contents");
    facts.Differences = CountFiles(platform, manual.ComparePath);
    LookForRoom(platform, [&] { AddRoomForDifferences(platform, manual, facts); });
    return facts;
}

bool CanMoveIntoPlace(const Program& program, const std::wstring& placed) {
    return program.Platform.Volumes.IsOneVolume(program.Paths.UnZipTempPath, placed);
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& folder) {
    return platform.Folders.Exists(folder) ? FindFileInUse(platform, folder, folder) : L"";
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target) {
    std::wstring found;
    (void)Attempt(platform.FaultLog, "looking for files in use", [&] {
        VisitFiles(platform, source, [&](const std::wstring& file) {
            if (platform.Files.IsInUse(target + file)) {
                found = target + file;
            }
            return found.empty();
        });
    });
    return found;
}

void RequireWholeManual(const Program& program, const DiscCatalogueRecord& manual) {
    if (manual.PdfForm == ManualForm::Pdf) {
        RequireReadable(program.Platform, messages::ManualFailed, [&] { ReadPdfManual(program, manual); });
    } else {
        RequireReadable(program.Platform, messages::ExtractionFailed, [&] { ReadArchive(program, manual); });
    }
}

void RequireReadableFolder(Platform& platform, const std::wstring& folder) {
    RequireReadable(platform, messages::ManualFailed, [&] { ReadFilesThrough(platform, folder); });
}

}  // namespace mip
