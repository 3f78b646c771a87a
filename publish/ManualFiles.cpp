#include "publish/ManualFiles.h"

#include <algorithm>
#include <set>

#include "platform/PlatformError.h"
#include "platform/archive/EntryName.h"
#include "publish/DiscDescription.h"
#include "publish/FileTools.h"
#include "publish/PathText.h"
#include "text/UnicodeText.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t LongestJolietName = 103;  // UTF-16 units, with the image maker's long names

std::size_t Utf16Length(std::wstring_view text) {
    std::size_t length = 0;
    while (!text.empty()) {
        length += TakeCodePoint(text) > 0xFFFF ? 2 : 1;
    }
    return length;
}

void AddFiles(const fs::path& folder, const std::wstring& prefix, std::vector<ManualFile>& files) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::wstring name = prefix + TextOf(entry.path().filename());
        if (entry.is_directory() && !entry.is_symlink()) {
            AddFiles(entry.path(), name + L'/', files);
        } else {
            files.push_back({name, entry.path()});
        }
    }
}

/// What is wrong with the files of an HTML manual; "" when nothing is.
std::string FilesFault(const std::vector<ManualFile>& files) {
    std::set<std::wstring> names;
    for (const ManualFile& file : files) {
        const std::string fault = NameFault(file.Name);
        const std::wstring name = ToUpper(file.Name);
        if (!fault.empty() || !names.insert(name).second) {
            return "the name " + ToUtf8(file.Name) + " " +
                   (fault.empty() ? "differs from another's in case only" : fault);
        }
        if (name == L"CAR_INFO.CI" || name.starts_with(L"INSTALL/")) {
            return ToUtf8(file.Name) + " would lie where the disc has its own";
        }
    }
    return names.contains(L"CONTENTS/INDEX.HTML") ? "" : "has no contents/index.html";
}

std::string SourceFault(const ManualDescription& manual, const fs::path& source) {
    std::error_code error;
    if (manual.Record.PdfForm == ManualForm::Archive) {
        return fs::is_directory(source, error) ? FilesFault(ListManualFiles(source)) : "is no folder";
    }
    if (!fs::is_regular_file(source, error)) {
        return "is no file";
    }
    FileBytes bytes(source);
    const std::span<const char> start = bytes.Next();
    return std::string_view(start.data(), start.size()).starts_with("%PDF-") ? "" : "is no PDF";
}

}  // namespace

std::vector<ManualFile> ListFiles(const fs::path& folder, const std::wstring& prefix) {
    std::vector<ManualFile> files;
    AddFiles(folder, prefix, files);
    std::ranges::sort(files, {}, [](const ManualFile& file) { return ToUtf8(file.Name); });
    return files;
}

std::vector<ManualFile> ListManualFiles(const fs::path& source) {
    return ListFiles(source, fs::is_directory(source / "contents") ? L"" : L"contents/");
}

void CheckSource(const ManualDescription& manual, const fs::path& source, std::vector<DescriptionFault>& faults) {
    const std::string fault = SourceFault(manual, source);
    if (!fault.empty()) {
        faults.push_back({manual.LineOf(L"Source"), "Source", Utf8Of(source) + ": " + fault});
    }
}

std::string NameFault(const std::wstring& name) {
    try {
        for (const std::wstring& part : Split(CheckedEntryName(name), L'\\')) {
            if (Utf16Length(part) > LongestJolietName) {
                return "is longer than 103 characters, where a disc's names end";
            }
            if (part.find(L';') != std::wstring::npos) {
                return "has a semicolon, which a disc's names cannot have";
            }
        }
        return {};
    } catch (const PlatformError&) {
        return "is no name that Windows takes";
    }
}

}  // namespace mip
