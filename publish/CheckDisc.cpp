#include "publish/CheckDisc.h"

#include <algorithm>
#include <set>

#include "app/modFile.h"
#include "platform/Files.h"
#include "publish/DiscImage.h"
#include "publish/ManualFiles.h"
#include "publish/PathText.h"
#include "text/ProfileText.h"

namespace mip {
namespace {

constexpr std::size_t LongestPath = 240;  // characters of a path on a disc

void CheckProgramFiles(DiscProgram& disc, Findings& findings) {
    RequireFile(disc, L"D:\\index.html", "the start page is what a computer without the diagnostic program shows",
                findings);
    RequireFile(disc, L"D:\\install.html", "the menu opens it as the installation guide", findings);
    RequireFile(disc, L"D:\\programs\\setup\\ManualInstall.exe", "put the program there", findings);
    RequireFile(disc, disc.Program.Paths.RmDirBatPath, "take it from the delivered SysDir", findings);
    RequireFile(disc, L"D:\\programs\\man_manager\\setup.exe",
                "without it a workshop that lacks the manual manager cannot install", findings);
}

/// Walks the disc's folders.
class NameChecker {
  public:
    NameChecker(Folders& folders, Findings& findings) : folders_(folders), findings_(findings) {}

    void Check(const std::wstring& folder) {
        const FolderListing listing = folders_.List(folder);
        std::set<std::wstring> names;
        for (const auto* list : {&listing.Subfolders, &listing.Files, &listing.Links}) {
            for (const std::wstring& name : *list) {
                CheckName(JoinPath(folder, name), name, names.insert(ToUpper(name)).second);
            }
        }
        for (const std::wstring& name : listing.Links) {
            Add(JoinPath(folder, name), "symbolic-link", "is a link, which a disc does not have",
                "put the file itself there");
        }
        for (const std::wstring& name : listing.Subfolders) {
            Check(JoinPath(folder, name));
        }
    }

  private:
    void CheckName(const std::wstring& path, const std::wstring& name, bool isNew) {
        const std::string fault = NameFault(name);
        if (!fault.empty()) {
            Add(path, "name", "the name " + fault, "rename it and what refers to it");
        } else if (!isNew) {
            Add(path, "name-case", "the name differs from another's in case only", "rename one of them");
        } else if (path.size() > LongestPath) {
            Add(path, "path-length", "the path has more than 240 characters", "shorten the names of its folders");
        }
    }

    void Add(const std::wstring& path, const char* code, const std::string& text, const char* fix) {
        findings_.push_back({OnDisc(path), code, text, fix});
    }

    Folders& folders_;
    Findings& findings_;
};

}  // namespace

Findings CheckDisc(const std::filesystem::path& root) {
    DiscProgram disc(root);
    Findings findings;
    CheckProgramFiles(disc, findings);
    CheckSettings(disc, findings);
    CheckTexts(disc, findings);
    CheckCatalogue(disc, findings);
    CheckManuals(disc, findings);
    CheckManualInfo(disc, findings);
    CheckNames(disc, findings);
    CheckLinks(disc, findings);
    std::sort(findings.begin(), findings.end());
    return findings;
}

Findings CheckImage(const std::filesystem::path& image) {
    const UnpackedImage unpacked(image);
    Findings findings = CheckDisc(unpacked.Folder());
    if (!HasJolietNames(image)) {
        findings.insert(findings.begin(), {"", "joliet", "has no Joliet names, so that Windows shows short ones",
                                           "make the image anew with Joliet names"});
    }
    return findings;
}

void CheckNames(DiscProgram& disc, Findings& findings) {
    NameChecker(disc.Program.Platform.Folders, findings).Check(L"D:");
}

std::string OnDisc(const std::wstring& path) {
    constexpr std::size_t drive = std::wstring_view(L"D:\\").size();
    return ToUtf8(ReplaceAll(path.substr(std::min(drive, path.size())), L"\\", L"/"));
}

bool RequireFile(DiscProgram& disc, const std::wstring& file, const std::string& fix, Findings& findings) {
    const bool isThere = disc.Program.Platform.Files.Exists(file);
    if (!isThere) {
        findings.push_back({OnDisc(file), "missing", "is not there", fix});
    }
    return isThere;
}

bool CheckEncoding(DiscProgram& disc, const std::wstring& file, bool utf8IsKnown, Findings& findings) {
    const std::string bytes = disc.Program.Platform.Files.Read(file);
    const bool isMarked = IsUtf16Profile(bytes) || (utf8IsKnown && bytes.starts_with("\xEF\xBB\xBF"));
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (isMarked || std::ranges::all_of(bytes, isAscii)) {
        return true;
    }
    findings.push_back({OnDisc(file), "encoding", "is read by each computer's own code page",
                        utf8IsKnown ? "save it as UTF-8 or UTF-16 with a byte-order mark"
                                    : "save it as UTF-16 (low byte first) with a byte-order mark"});
    return false;
}

}  // namespace mip
