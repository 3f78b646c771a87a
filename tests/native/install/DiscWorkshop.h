#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "install/FolderQuestion.h"
#include "install/InstallationView.h"
#include "install/ProgressBars.h"
#include "tests/native/fakes/Workshop.h"

namespace mip {

/// Writes down what the progress screen is told and when; the folder question is answered by `OnAskForFolder`.
class RecordingView : public InstallationView, public FolderQuestion {
  public:
    explicit RecordingView(const FakeClock& clock) : clock_(clock), last_(clock.Time) {}

    void SetCaption(const std::wstring& caption) override { Tell(L"title: " + caption); }
    void SetStep(Step step, const std::wstring& caption, StepState state) override;
    void SetBar(Bar bar, const BarState& state) override;
    void SetManual(const std::wstring& name, const std::wstring& position) override {
        Tell(L"\n[" + name + L": " + position + L"]");
    }
    void SetProgress(const RunProgress& progress) override;
    void SetBusyPointer(bool busy) override { Tell((Busy = busy) ? L"busy" : L"idle"); }
    void Repaint() override { Tell(L"!"); }
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) override;

    /// Adds a word to the story, and the seconds since the last one.
    void Tell(const std::wstring& word);

    std::string Story;  ///< a line for each step and manual
    std::map<Bar, BarState> Bars;
    bool Busy = false;
    RunProgress Progress;
    int FoldersAsked = 0;
    std::function<std::optional<std::wstring>(const std::wstring& proposal)> OnAskForFolder;

  private:
    const FakeClock& clock_;
    decltype(FakeClock::Time) last_;
};

/// With a manager program in the library and its setup on the disc, to which manuals are added.
struct DiscWorkshop : StartedWorkshop {
    DiscWorkshop();

    RecordingView View{Clock};

    using Pages = FakeArchives::Entries;

    /// The pages of a whole manual, each telling the edition that it belongs to.
    static Pages ManualPages(const std::wstring& folder, const std::string& edition);

    /// Puts an archive manual on the disc, its folder named like the publication.
    void PutArchiveManual(const std::wstring& pubNo, int version);
    void PutPdfManual(const std::wstring& pubNo, int version);
    /// Gives a manual of the disc a comparison set of one changed page.
    void PutComparisonSet(const std::wstring& pubNo, int version);
    /// Installs an edition below C:\Manuals and records it.
    void PutInstalledManual(const std::wstring& pubNo, int version);

    bool Install();
    /// A newly started program from its start to its exit code, without a screen and without a question.
    struct QuietRun {
        std::optional<std::uint32_t> ExitCode;
        std::wstring Log;
    };
    QuietRun RunQuietly();

    /// Version, path and adjustment flag of each row of the catalogue, by publication. Reads with all faults off.
    struct Row {
        std::wstring Version;
        std::wstring Path;
        std::wstring AdjustFlag;
        bool operator==(const Row&) const = default;
    };
    std::map<std::wstring, Row> Rows();

  private:
    void PutCarInfo(const std::wstring& pubNo, int version);
};

}  // namespace mip
