#include "install/Editions.h"

#include <cwctype>
#include <exception>
#include <functional>
#include <map>

#include "app/modFile.h"
#include "install/modPdf.h"
#include "platform/Archives.h"
#include "platform/Clusters.h"
#include "platform/Files.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::size_t EditionDigit = 4;

/// Calls `visit` with the path below the folder ("\\contents\\index.html") of every file, until it returns false. False
/// when the folder cannot be listed.
bool VisitFiles(Platform& platform, const std::wstring& folder, const std::function<bool(const std::wstring&)>& visit) {
    std::vector<std::wstring> open{L""};
    try {
        while (!open.empty()) {
            const std::wstring current = open.back();
            open.pop_back();
            const FolderListing listing = platform.Folders.List(folder + current);
            for (const std::wstring& name : listing.Files) {
                if (!visit(current + L'\\' + name)) {
                    return true;
                }
            }
            for (const std::wstring& name : listing.Subfolders) {
                open.push_back(current + L'\\' + name);
            }
        }
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

/// Bytes that all files below a folder take on a drive; 0 when it cannot be listed.
double FolderBytes(Platform& platform, const std::wstring& folder) {
    double bytes = 0;
    const bool isListed = VisitFiles(platform, folder, [&](const std::wstring& file) {
        bytes += static_cast<double>(SizeInClusters(platform.Files.Status(folder + file).Size));
        return true;
    });
    return isListed ? bytes : 0;
}

/// Bytes that each drive must have free before the manual is installed.
std::map<std::wstring, double> NeededBytes(const Program& program, const DiscCatalogueRecord& manual) {
    Platform& platform = program.Platform;
    std::map<std::wstring, double> needed;
    const auto need = [&](const std::wstring& path, double bytes) {
        needed[ToUpper(platform.Volumes.DriveName(path))] += bytes;
    };
    if (manual.PdfForm == L"1") {
        need(program.Installation.InstallPath, FolderBytes(platform, manual.SourcePath));
    } else {
        const auto bytes = static_cast<double>(platform.Archives.DeclaredSize(manual.SourcePath));
        need(program.Paths.UnZipTempPath, bytes);
        need(program.Installation.InstallPath, bytes);
    }
    return needed;
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

bool HasRoomForManual(const Program& program, const DiscCatalogueRecord& manual) {
    Platform& platform = program.Platform;
    try {
        for (const auto& [drive, bytes] : NeededBytes(program, manual)) {
            if (drive.empty()) {
                continue;
            }
            const double free = platform.Volumes.FreeBytes(drive + L"\\");
            const bool frees = ToUpper(platform.Volumes.DriveName(manual.InstalledPath)) == drive;
            if (free < bytes && free + (frees ? FolderBytes(platform, manual.InstalledPath) : 0) < bytes) {
                return false;
            }
        }
    } catch (const std::exception&) {
        return true;
    }
    return true;
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& folder) {
    return FindFileInUse(platform, folder, folder);
}

std::wstring FindFileInUse(Platform& platform, const std::wstring& source, const std::wstring& target) {
    std::wstring found;
    VisitFiles(platform, source, [&](const std::wstring& file) {
        if (platform.Files.IsInUse(target + file)) {
            found = target + file;
        }
        return found.empty();
    });
    return found;
}

bool IsManualWhole(const Program& program, const DiscCatalogueRecord& manual) {
    if (manual.PdfForm == L"1") {
        return RootedManualPdfExists(program, manual.FolderName, manual.Pub_No);
    }
    return program.Platform.Archives.IsWhole(manual.SourcePath);
}

}  // namespace mip
