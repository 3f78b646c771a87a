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

/// What the progress screen was told, in order; the folder question is answered by `OnAskForFolder`.
class RecordingView : public InstallationView, public FolderQuestion {
  public:
    void SetCaption(const std::wstring& caption) override { Caption = caption; }
    void SetStep(Step step, const std::wstring& caption, StepState state) override { Steps[step] = {caption, state}; }
    void SetBar(Bar bar, const BarState& state) override;
    void SetManual(const std::wstring& name, const std::wstring& position) override {
        Position = name.empty() ? position : name + L": " + position;
    }
    void SetProgress(const RunProgress& progress) override { Progress = progress; }
    void SetBusyPointer(bool busy) override { Busy = busy; }
    void Repaint() override {}
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) override;

    using ShownStep = std::pair<std::wstring, StepState>;  ///< caption and state

    std::wstring Caption;
    std::map<Step, ShownStep> Steps;
    std::map<Bar, BarState> Bars;
    std::map<Bar, std::vector<BarState>> ShownBars;  ///< every state in which a bar could be seen
    bool Busy = false;
    std::wstring Position;
    RunProgress Progress;
    int FoldersAsked = 0;
    std::function<std::optional<std::wstring>(const std::wstring& proposal)> OnAskForFolder;
};

/// With a manager program in the library and its setup on the disc, to which manuals are added.
struct DiscWorkshop : StartedWorkshop {
    DiscWorkshop();

    RecordingView View;

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
