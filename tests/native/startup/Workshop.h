#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Program.h"
#include "screens/ScreenFlow.h"
#include "startup/modMain.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {

/// Remembers which screens were asked for, by name.
class RecordedScreens : public Screens {
  public:
    explicit RecordedScreens(mip::Program& program) : program_(program) {}

    void ShowMenu() override { Show("menu"); }
    void ShowAgreement() override { Show("agreement"); }
    void ShowInstallation() override { Show("installation"); }
    void ShowResult() override { Show("result"); }
    void ShowClosing() override { Show("closing"); }
    void ShowMaintenance() override { Show("maintenance"); }
    void ShowStartPage() override;
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord&, const std::wstring& proposal) override {
        return proposal;
    }

    std::vector<std::string> Shown;
    bool Fail = false;  ///< showing a screen throws

  private:
    void Show(const char* name);

    mip::Program& program_;
};

/// Opens every file; counts the connections that are open.
class PlainEngine : public DatabaseEngine {
  public:
    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;

    bool Refuse = false;
    std::shared_ptr<int> OpenConnections = std::make_shared<int>(0);
};

/// A workshop's computer on which everything is in place for a start, and the program on its disc.
struct Workshop {
    Workshop();

    /// Runs Main; ExitCode is set when the process ended.
    void Start(const std::vector<std::wstring>& arguments = {});
    void PutSettings(const std::string& from = "", const std::string& to = "");
    std::string LogText() { return Windows.Tree.BytesOf(L"C:\\mip.log"); }

    InMemoryWindows Windows;
    PlainEngine Engine;
    mip::Program Program{Windows.Platform};
    RecordedScreens Screens{Program};
    ScreenFlow Flow{Program, Screens, EndProgram};
    std::optional<std::uint32_t> ExitCode;
};

inline constexpr wchar_t SysDir[] = L"D:\\programs\\setup\\SysDir";
inline constexpr wchar_t Library[] = L"C:\\Korvex\\Manual";
inline constexpr wchar_t LibraryKey[] = L"SOFTWARE\\Vantor\\Korvex\\ManualLink";

}  // namespace mip
