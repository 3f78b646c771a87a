#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Program.h"
#include "app/Screens.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {

/// Remembers which screens were asked for, by name.
class RecordedScreens : public Screens {
  public:
    void ShowMenu() override { Show("menu"); }
    void ShowStartUp() override { Show("start-up"); }
    void ShowInstallation() override { Show("installation"); }
    void ShowResult() override { Show("result"); }
    void ShowTerms() override { Show("terms"); }
    void ShowTransaction() override { Show("transaction"); }

    std::vector<std::string> Shown;
    bool Fail = false;  ///< showing a screen throws

  private:
    void Show(const char* name);
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
    RecordedScreens Screens;
    mip::Program Program{Windows.Platform};
    std::optional<std::uint32_t> ExitCode;
};

inline constexpr wchar_t SysDir[] = L"D:\\programs\\setup\\SysDir";
inline constexpr wchar_t Library[] = L"C:\\Korvex\\Manual";
inline constexpr wchar_t LibraryKey[] = L"SOFTWARE\\Vantor\\Korvex\\ManualLink";

}  // namespace mip
