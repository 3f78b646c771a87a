#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Program.h"
#include "platform/sqlite/SqliteEngine.h"
#include "screens/ScreenFlow.h"
#include "startup/modMain.h"
#include "tests/native/fakes/InMemoryWindows.h"
#include "tests/native/fakes/TreeVfs.h"

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
    /// As the windows do.
    void ShowStartPage() override { OpenDiscIndex(program_); }
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord&, const std::wstring& proposal) override {
        return proposal;
    }

    std::vector<std::string> Shown;
    bool Fail = false;  ///< showing a screen throws

  private:
    void Show(const char* name);

    mip::Program& program_;
};

/// One run of the program.
struct Process {
    explicit Process(const Platform& computer) : Program(computer) {}
    /// Runs Main; ExitCode is set when the process ended.
    void Start(const std::vector<std::wstring>& arguments = {});

    mip::Program Program;
    RecordedScreens Screens{Program};
    ScreenFlow Flow{Program, Screens, EndProgram};
    std::optional<std::uint32_t> ExitCode;
};

/// A workshop's computer on which everything is in place for a start: the diagnostic program, an empty catalogue and,
/// in the drive, the program on a disc without manuals. Every message reads "message N".
struct Workshop : InMemoryWindows {
    Workshop();

    void PutSettings(const std::string& from = "", const std::string& to = "");
    /// Puts a catalogue of a layout version there, filled by these statements. Works for the read-only disc too.
    void PutCatalogue(const std::wstring& path, std::int16_t layoutVersion,
                      const std::vector<std::wstring>& statements = {});
    /// Records a manual in the catalogue that the program has open, as of now.
    void PutRow(const std::wstring& pubNo, int version, const std::wstring& folder,
                const std::wstring& adjustFlag = L"0", const std::wstring& pdfForm = L"0");
    std::string LogText() { return Tree.BytesOf(L"C:\\mip.log"); }
    /// Connections of the program to its catalogue.
    int OpenConnections() { return Tree.HasFile(MdbPath) ? Tree.Find(MdbPath)->OpenHandles : 0; }

    /// Starts the program anew. True when the start ended with the menu.
    bool StartProgram();
    mip::Program& Program() { return Run->Program; }

    TreeVfs Vfs{Tree, Faults};
    mip::SqliteEngine Embedded{Vfs.Name()};
    std::unique_ptr<Process> Run = std::make_unique<Process>(Platform);  ///< not started yet

    static constexpr wchar_t InstallDir[] = L"C:\\Vantor";
    static constexpr wchar_t MdbPath[] = L"C:\\Vantor\\kvx3.mdb";
    static constexpr wchar_t NewSource[] = L"D:\\programs\\setup\\kvx3new.mdb";
    static constexpr wchar_t SettingsFile[] = L"D:\\programs\\setup\\SysDir\\SysParameter.ini";
    static constexpr wchar_t Messages[] = L"D:\\programs\\setup\\SysDir\\M09.ini";
    static constexpr wchar_t LibraryKey[] = L"SOFTWARE\\Vantor\\Korvex\\ManualLink";
};

/// With the program's menu on the screen.
struct StartedWorkshop : Workshop {
    StartedWorkshop();
};

}  // namespace mip
