#include "install/Editions.h"

#include "app/Program.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <map>
#include <string_view>

#include "app/Failure.h"
#include "app/Messages.h"
#include "app/modFile.h"
#include "app/modPdf.h"
#include "install/modUnZip.h"
#include "platform/Archives.h"
#include "platform/Clusters.h"
#include "platform/Files.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::size_t EditionDigit = 4;

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

using BytesByDrive = std::map<std::wstring, double>;

void AddBytes(const Platform& platform, BytesByDrive& bytes, const std::wstring& path, double more) {
    bytes[ToUpper(platform.Volumes.DriveName(path))] += more;
}

/// Bytes that each drive must have free before the manual is installed.
BytesByDrive NeededBytes(const Program& program, const DiscCatalogueRecord& manual) {
    Platform& platform = program.Platform;
    BytesByDrive needed;
    if (manual.PdfForm == L"1") {
        AddBytes(platform, needed, program.Installation.InstallPath, FolderBytes(platform, manual.SourcePath));
    } else {
        const ArchiveFacts archive = platform.Archives.Inspect(ExtractionOf(program, manual));
        const auto bytes = static_cast<double>(archive.BytesOnDrive);
        AddBytes(platform, needed, program.Paths.UnZipTempPath, bytes);
        AddBytes(platform, needed, program.Installation.InstallPath, bytes);
    }
    return needed;
}

/// True when each drive has the bytes free that it needs.
bool HaveFree(const Platform& platform, const BytesByDrive& needed) {
    return std::ranges::all_of(needed, [&](const auto& need) {
        const auto& [drive, bytes] = need;
        return drive.empty() || platform.Volumes.FreeBytes(drive + L"\\") >= bytes;
    });
}

/// The answer of a look at the drives; true when they cannot be asked.
bool UnlessUnknown(const Platform& platform, const std::function<bool()>& look) {
    try {
        return look();
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("looking for room on the drives", error);
        return true;
    }
}

void ReadFilesThrough(Platform& platform, const std::wstring& folder) {
    VisitFiles(platform, folder, [&](const std::wstring& file) {
        platform.Files.ReadThrough(folder + file);
        return true;
    });
}

void ReadPdfManual(const Program& program, const DiscCatalogueRecord& manual) {
    const std::wstring pdf = GetRootedManualPdfPath(program, manual.FolderName, manual.Pub_No);
    if (!program.Platform.Files.Exists(pdf)) {
        throw Failure(messages::ManualFailed, "the disc has no " + ToUtf8(pdf));
    }
    ReadFilesThrough(program.Platform, manual.SourcePath);
}

void ReadArchive(const Program& program, const DiscCatalogueRecord& manual) {
    const ArchiveFacts archive = program.Platform.Archives.Test(ExtractionOf(program, manual));
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

std::wstring BaseEditionOf(const std::wstring& pubNo) {
    if (pubNo.size() <= EditionDigit || pubNo[EditionDigit] < L'0' || pubNo[EditionDigit] > L'9') {
        throw ConversionError();
    }
    if (pubNo[EditionDigit] == L'0') {
        return {};
    }
    std::wstring base = pubNo;
    base[EditionDigit] = L'0';
    return base;
}

bool HasRoomForManual(const Program& program, const DiscCatalogueRecord& manual,
                      const std::vector<std::wstring>& goingFolders) {
    Platform& platform = program.Platform;
    return UnlessUnknown(platform, [&] {
        BytesByDrive needed = NeededBytes(program, manual);
        if (HaveFree(platform, needed)) {
            return true;
        }
        for (const std::wstring& folder : goingFolders) {
            AddBytes(platform, needed, folder, -FolderBytes(platform, folder));
        }
        return HaveFree(platform, needed);
    });
}

bool HasRoomForCopy(Platform& platform, const std::wstring& source, const std::wstring& target) {
    return UnlessUnknown(platform, [&] {
        BytesByDrive needed;
        VisitFiles(platform, source, [&](const std::wstring& file) {
            const bool replaces = platform.Files.Exists(target + file);
            AddBytes(platform, needed, target,
                     BytesOnDrive(platform, source + file) - (replaces ? BytesOnDrive(platform, target + file) : 0));
            return true;
        });
        return HaveFree(platform, needed);
    });
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& folder) {
    return platform.Folders.Exists(folder) ? FindFileInUse(platform, folder, folder) : L"";
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target) {
    std::wstring found;
    try {
        VisitFiles(platform, source, [&](const std::wstring& file) {
            if (platform.Files.IsInUse(target + file)) {
                found = target + file;
            }
            return found.empty();
        });
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("looking for files in use", error);
    }
    return found;
}

void RequireWholeManual(const Program& program, const DiscCatalogueRecord& manual) {
    if (manual.PdfForm == L"1") {
        RequireReadable(program.Platform, messages::ManualFailed, [&] { ReadPdfManual(program, manual); });
    } else {
        RequireReadable(program.Platform, messages::ExtractionFailed, [&] { ReadArchive(program, manual); });
    }
}

void RequireReadableFolder(Platform& platform, const std::wstring& folder) {
    RequireReadable(platform, messages::ManualFailed, [&] { ReadFilesThrough(platform, folder); });
}

}  // namespace mip
