#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace mip {

struct DescriptionFault;
struct ManualDescription;

/// A file of a manual: its path below the manual's folder, parts joined by slashes, and where its bytes are.
struct ManualFile {
    std::wstring Name;
    std::filesystem::path Source;
};

/// All files below a folder, sorted by name, each with `prefix` before its name. Throws
/// std::filesystem::filesystem_error.
std::vector<ManualFile> ListFiles(const std::filesystem::path& folder, const std::wstring& prefix = {});
/// The files of an HTML manual. A source without a folder "contents" is what goes into it.
std::vector<ManualFile> ListManualFiles(const std::filesystem::path& source);
/// Faults of a manual's source are added: it is not there, lacks its first page, or a name is none for Windows or a
/// disc.
void CheckSource(const ManualDescription& manual, const std::filesystem::path& source,
                 std::vector<DescriptionFault>& faults);

/// "" for a name that Windows and a disc's Joliet names take as it is, else what is wrong with it.
std::string NameFault(const std::wstring& name);
}  // namespace mip
