#include "publish/MakeDisc.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "platform/ScopeGuard.h"
#include "publish/CheckDisc.h"
#include "publish/ComparisonSet.h"
#include "publish/DiscPages.h"
#include "publish/DiscPlatform.h"
#include "publish/FileTools.h"
#include "publish/ManualFiles.h"
#include "publish/PathText.h"
#include "publish/Progress.h"
#include "publish/ZipWriter.h"
#include "tools/mkcatalogue/WriteCatalogue.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

class DiscMaker {
  public:
    DiscMaker(const DiscDescription& description, const DiscParts& parts, const fs::path& root)
        : description_(description), parts_(parts), root_(root), setup_(root / "programs" / "setup") {}

    std::vector<std::string> Make() {
        CopyPrograms();
        ReadSettings();
        CheckAll();
        WriteCatalogue(description_.Catalogue, setup_ / PathOf(newDatabase_));
        MakeManuals();
        WritePages();
        WriteManualInfo();
        SetFolderTimes(root_, description_.Date);
        return std::move(notes_);
    }

  private:
    void CopyPrograms() {
        RequireFile(parts_.Program / "ManualInstall.exe");
        if (!parts_.Programs.empty()) {
            CopyTree(parts_.Programs, root_ / "programs");
        }
        if (fs::exists(setup_)) {
            throw std::runtime_error(Utf8Of(parts_.Programs) + " has a folder setup, where the program goes");
        }
        CopyTree(parts_.Program, setup_);
    }

    void ReadSettings() {
        DiscProgram disc(root_);
        Findings findings;
        CheckSettings(disc, findings);
        if (!findings.empty()) {
            throw std::runtime_error("the program's settings are not in order:\n" + FindingsText(findings));
        }
        lengths_ = disc.Program.Settings.Columns;
        newDatabase_ = disc.Program.Settings.Kvx3NewMdbName;
    }

    void CheckAll() const {
        std::vector<DescriptionFault> faults;
        CheckDescription(description_, faults);
        CheckFieldLengths(description_, lengths_, faults);
        for (const ManualDescription& manual : description_.Manuals) {
            CheckSource(manual, SourceOf(manual), faults);
        }
        std::ranges::stable_sort(faults, {}, &DescriptionFault::Line);
        ThrowFaults(std::move(faults));
    }

    fs::path SourceOf(const ManualDescription& manual) const { return parts_.Sources / manual.Source; }

    void MakeManuals() {
        const auto earlier = parts_.Base.empty() ? std::nullopt : std::optional<EarlierEditions>(parts_.Base);
        Progress progress("Making manuals", description_.Manuals.size());
        for (const ManualDescription& manual : description_.Manuals) {
            const fs::path folder = root_ / PathOf(manual.Record.FolderName);
            WriteWhole(folder / "car_info.ci", CarInfoFile(manual.Record), description_.Date);
            if (manual.Record.PdfForm == ManualForm::Pdf) {
                MakePdfManual(manual, folder);
            } else {
                MakeArchiveManual(manual, folder, earlier);
            }
            progress.Step();
        }
    }

    void MakePdfManual(const ManualDescription& manual, const fs::path& folder) const {
        const fs::path pdf = folder / "contents" / PathOf(manual.Record.Pub_No + L".pdf");
        CopyWithTime(SourceOf(manual), pdf, description_.Date);
        WriteWhole(folder / "contents" / "index.html", PdfPage(manual), description_.Date);
    }

    /// The loose pages are for reading from the disc.
    void MakeArchiveManual(const ManualDescription& manual, const fs::path& folder,
                           const std::optional<EarlierEditions>& earlier) {
        const std::vector<ManualFile> files = ListManualFiles(SourceOf(manual));
        fs::create_directories(folder / "install" / "condense");
        const fs::path archive = folder / "install" / "condense" / "manual.zip";
        ZipWriter zip(archive, description_.Date);
        for (const ManualFile& file : files) {
            zip.Add(manual.Record.FolderName + L'/' + file.Name, file.Source);
            CopyWithTime(file.Source, folder / PathOf(file.Name), description_.Date);
        }
        zip.Finish();
        SetTime(archive, description_.Date);
        const auto before = earlier ? earlier->Before(manual.Record) : std::nullopt;
        if (before) {
            MakeComparisonSet(manual, files, *before, folder / "install" / "compare");
        }
    }

    void MakeComparisonSet(const ManualDescription& manual, const std::vector<ManualFile>& files,
                           const fs::path& before, const fs::path& set) {
        const EditionChanges changes = CompareEditions(files, before);
        if (!changes.Obstacle.empty()) {
            notes_.push_back(ToUtf8(manual.Record.Pub_No) + ": no comparison set, since " + changes.Obstacle);
            return;
        }
        constexpr std::size_t prefix = std::wstring_view(L"contents/").size();
        for (const ManualFile& file : changes.Changed) {
            CopyWithTime(file.Source, set / PathOf(file.Name.substr(prefix)), description_.Date);
        }
    }

    void WritePages() const {
        const std::string page = ReadWhole(parts_.Description / description_.StartPage);
        WriteWhole(root_ / "index.html", StartPage(page, description_.Manuals), description_.Date);
        CopyWithTime(parts_.Description / description_.Guide, root_ / "install.html", description_.Date);
    }

    void WriteManualInfo() const {
        std::vector<const ManualDescription*> all;
        std::vector<const ManualDescription*> users;
        for (const ManualDescription& manual : description_.Manuals) {
            const auto& languages = description_.UserLanguages;
            all.push_back(&manual);
            if (languages.empty() || std::ranges::find(languages, manual.Record.Lang) != languages.end()) {
                users.push_back(&manual);
            }
        }
        WriteWhole(setup_ / "man_info_do.ci", ManualInfoFile(all), description_.Date);
        WriteWhole(setup_ / "man_info_us.ci", ManualInfoFile(users), description_.Date);
        SetTime(setup_ / PathOf(newDatabase_), description_.Date);
    }

    static void RequireFile(const fs::path& file) {
        if (!fs::is_regular_file(file)) {
            throw std::runtime_error("there is no " + Utf8Of(file));
        }
    }

    const DiscDescription& description_;
    const DiscParts& parts_;
    fs::path root_;
    fs::path setup_;
    ColumnLengths lengths_;
    std::wstring newDatabase_;
    std::vector<std::string> notes_;
};

}  // namespace

std::vector<std::string> MakeDisc(const DiscDescription& description, const DiscParts& parts, const fs::path& disc) {
    // A slash at its end would put the unfinished disc into it.
    const fs::path output = disc.has_filename() ? disc : disc.parent_path();
    if (fs::exists(output)) {
        throw std::runtime_error(Utf8Of(output) + " exists already; a disc is made anew");
    }
    fs::path partial = output;
    partial += ".partial";
    fs::remove_all(partial);
    ScopeGuard removePartial([&] {
        std::error_code ignored;
        fs::remove_all(partial, ignored);
    });
    std::vector<std::string> notes = DiscMaker(description, parts, partial).Make();
    fs::rename(partial, output);
    return notes;
}

}  // namespace mip
