#pragma once

#include "app/EndOfProgram.h"
#include "screens/QuietScreens.h"
#include "screens/Screens.h"

namespace mip {

struct Program;

/// The order of screens. A form closes its window and then reports here what the user did.
class ScreenFlow final : public FolderQuestion {
  public:
    ScreenFlow(Program& program, Screens& shown, EndOfProgram end);
    ScreenFlow(const ScreenFlow&) = delete;
    ScreenFlow& operator=(const ScreenFlow&) = delete;

    /// Decides, once the switches are known, whether the screens are shown or the run is a quiet one.
    void ChooseScreens();

    /// The first screen of a start that found everything in order.
    void Begin();
    void ShowStartPage();
    void StartInstallation();
    /// The menu was closed: through the closing screen when a run has ended, else at once.
    void CloseMenu();
    /// The agreement was answered; anything but consent ends the program.
    void AnswerAgreement(bool agreed);
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) override;
    /// The installation run is over, or the start has failed.
    void ShowResult();
    /// The result screen could not read the catalogue: a box, and the program ends.
    [[noreturn]] void FailResult();
    /// The result screen's button. Ends the program when nothing was installed.
    void CloseResult();
    [[noreturn]] void End(TemporaryFolder temporary = TemporaryFolder::Keep);

  private:
    [[noreturn]] void Leave();

    Program& program_;
    QuietScreens quiet_;
    Screens* screens_;
    EndOfProgram end_;
};

}  // namespace mip
