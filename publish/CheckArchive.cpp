#include <algorithm>
#include <exception>
#include <functional>
#include <set>

#include "app/modFile.h"
#include "install/modUnZip.h"
#include "platform/Archives.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "platform/archive/ZipDirectory.h"
#include "platform/archive/ZipReader.h"
#include "publish/CheckDisc.h"
#include "publish/FileTools.h"
#include "text/Checked.h"

namespace mip {
namespace {

constexpr std::wstring_view Contents = L"contents\\";

/// Checks the archive of one manual, and what lies beside it.
class ArchiveChecker {
  public:
    ArchiveChecker(DiscProgram& disc, const DiscCatalogueRecord& manual, Findings& findings)
        : disc_(disc), platform_(disc.Program.Platform), manual_(manual), findings_(findings) {}

    void Check() {
        // A set whose archive cannot be read is not looked at.
        if (Tests()) {
            CheckNameEncoding();
            ComparePages();
            CheckFolder();
            CheckSet();
        }
    }

  private:
    void Add(const std::wstring& file, const char* code, const std::string& text, const char* fix) {
        findings_.push_back({OnDisc(file), code, text, fix});
    }
    void Add(const char* code, const std::string& text, const char* fix) { Add(manual_.SourcePath, code, text, fix); }

    /// By the very command line of an installation.
    bool Tests() {
        try {
            const ArchiveFacts facts = platform_.Archives.Test(ExtractionOf(disc_.Program.Paths, manual_));
            if (!facts.HoldsManual) {
                Add("archive", "has no folder with files in it", "pack the manual in one top-level folder");
            }
            onlyFolder_ = facts.OnlyFolder;
            return facts.HoldsManual;
        } catch (const PlatformError& error) {
            Add("archive", std::string("would be refused: ") + error.what() + ": " + ToUtf8(error.Object()),
                "pack the manual anew");
            return false;
        }
    }

    void CheckNameEncoding() {
        const auto bytes = disc_.Disc.ArchiveFiles().OpenArchive(manual_.SourcePath);
        bool isPlain = true;
        VisitZipRecords(*bytes, FindZipDirectory(*bytes), [&](const ZipRecord& record) {
            const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
            isPlain = isPlain && (record.NameIsUtf8 || std::ranges::all_of(record.Name, isAscii));
        });
        if (!isPlain) {
            Add("encoding", "has names in the code page of the computer that packed it",
                "pack it with a program that marks its names as UTF-8");
        }
    }

    /// Calls `visit` with each entry's name below the top-level folder.
    void VisitEntries(const std::function<void(ZipReader&, const std::wstring&)>& visit) {
        const auto bytes = disc_.Disc.ArchiveFiles().OpenArchive(manual_.SourcePath);
        ZipReader reader(*bytes, disc_.Disc.ArchiveFiles().NameCodePage());
        while (reader.Next()) {
            const std::wstring path = ReplaceAll(reader.Name(), L"/", L"\\");
            const std::size_t slash = std::min(path.find(L'\\'), path.size());
            visit(reader, path.substr(std::min(slash + 1, path.size())));
        }
    }

    /// The loose page is what the disc shows.
    void ComparePages() {
        VisitEntries([&](ZipReader& reader, const std::wstring& name) {
            names_.insert(ToUpper(name));
            const std::wstring page = JoinPath(L"D:\\" + manual_.FolderName, name);
            if (!reader.IsFolder() && Differs(reader, page)) {
                Add(page, "page", "differs from the archive's",
                    "the disc shows another page than it installs; copy the archive's");
            }
        });
    }

    /// The set's page is what a differential installation brings.
    void CompareSet() {
        VisitEntries([&](ZipReader& reader, const std::wstring& name) {
            if (!reader.IsFolder() && name.starts_with(Contents) &&
                Differs(reader, JoinPath(manual_.ComparePath, name.substr(Contents.size())))) {
                AddSetFault(name.substr(Contents.size()), "differs from the archive's");
            }
        });
    }

    /// False also when there is no such file.
    bool Differs(ZipReader& reader, const std::wstring& file) const {
        const auto place = disc_.Disc.Find(file);
        return place && !HoldsBytes(*place, [&] { return reader.Data(); });
    }

    void AddSetFault(const std::wstring& name, const char* text) {
        Add(JoinPath(manual_.ComparePath, name), "set", text,
            "the set would give another edition than the archive; make it anew");
    }

    void CheckFolder() {
        if (onlyFolder_ != manual_.FolderName) {
            Add("archive", "does not have everything in one folder " + ToUtf8(manual_.FolderName),
                "pack the manual in one folder of the disc folder's name");
        } else if (!names_.contains(L"CONTENTS\\INDEX.HTML")) {
            Add("archive", "has no contents/index.html, so that the installed manual counts as damaged",
                "add the page");
        }
    }

    void CheckSet() {
        if (!platform_.Folders.Exists(manual_.ComparePath)) {
            return;
        }
        CompareSet();
        const std::size_t files = CheckSetFiles(L"");
        if (files == 0) {
            Add(manual_.ComparePath, "set", "is empty, so that it is never used", "remove the folder");
        }
        if (IsFirstEdition()) {
            Add(manual_.ComparePath, "set", "has no edition before it: Version is " + ToUtf8(manual_.Version),
                "remove the folder, or correct Version");
        }
    }

    bool IsFirstEdition() const {
        try {
            return TextToInt16(manual_.Version) <= 1;
        } catch (const std::exception&) {
            return false;
        }
    }

    /// Returns how many files there are below a folder of the set.
    std::size_t CheckSetFiles(const std::wstring& below) {
        const FolderListing listing = platform_.Folders.List(JoinPath(manual_.ComparePath, below));
        for (const std::wstring& name : listing.Files) {
            if (!names_.contains(ToUpper(std::wstring(Contents) + below + name))) {
                AddSetFault(below + name, "is not in the archive's contents");
            }
        }
        std::size_t files = listing.Files.size();
        for (const std::wstring& name : listing.Subfolders) {
            files += CheckSetFiles(below + name + L'\\');
        }
        return files;
    }

    DiscProgram& disc_;
    Platform& platform_;
    const DiscCatalogueRecord& manual_;
    Findings& findings_;
    std::wstring onlyFolder_;
    std::set<std::wstring> names_;  ///< below the top-level folder, in capitals
};

}  // namespace

void CheckArchive(DiscProgram& disc, const DiscCatalogueRecord& manual, Findings& findings) {
    ArchiveChecker(disc, manual, findings).Check();
}

}  // namespace mip
