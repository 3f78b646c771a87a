#pragma once

#include <array>
#include <string>

#include "platform/Platform.h"

namespace mip {

struct DiscCatalogueRecord;
struct Paths;
struct Program;
struct Switches;

/// The texts of the installation directory screen.
struct DirectoryTexts {
    std::wstring Caption;
    std::wstring Name;
    std::array<std::wstring, 3> Instructions;
    std::wstring Change;
    std::wstring Ok;
    std::wstring Cancel;
    std::wstring Frame;
    std::wstring FolderQuestion;  ///< title of the folder browser

    bool operator==(const DirectoryTexts&) const = default;
};

DirectoryTexts LoadDirectoryScreen(const Program& program, const DiscCatalogueRecord& manual);
/// The folder that is proposed: the one given by /DIR=, else the run's own proposal.
std::wstring ProposedFolder(const Switches& switches, const std::wstring& proposal);
/// The folder after the folder browser gave one; "" (cancelled) changes nothing.
std::wstring ChangedFolder(const std::wstring& shown, const std::wstring& chosen);
/// OK: true when the manual fits into the folder. Otherwise a box says so.
[[nodiscard]] bool ConfirmFolder(const Program& program, const DiscCatalogueRecord& manual, const std::wstring& folder);
/// Cancel: true when the user does want to cancel the installation, whose texts are then set.
[[nodiscard]] bool CancelFolder(Program& program);
/// The folder of a run that asks no questions. Throws Failure when the manual does not fit.
std::wstring ChooseFolderUnasked(const Program& program, const DiscCatalogueRecord& manual,
                                 const std::wstring& proposal);

/// The path of a manual's PDF on the disc.
std::wstring PdfSourcePath(const Paths& paths, const DiscCatalogueRecord& entry);
/// Bytes that a folder's drive must have free for a manual.
double RequiredBytes(Platform& platform, const Paths& paths, const DiscCatalogueRecord& entry);
/// Bytes that manuals may fill on the path's drive; the drive with the program files keeps a reserve. 0 on failure.
double GetUsableFreeSpace(Platform& platform, const Paths& paths, const std::wstring& path);
/// Bytes of a file; 0 when it does not exist or cannot be asked.
double GetFileSize(Platform& platform, const std::wstring& path);
/// `size` with as many of its last digits zero as `step` has after its first, and `step` (a whole number) added:
/// 123456789 and "10000000" give 130000000.
double RoundUpToTenMillion(double size, const std::wstring& step);

}  // namespace mip
