#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <filesystem>

#include "platform/PlatformError.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/ComAutomation.h"
#include "platform/windows/WindowsShell.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

class ShellTest : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() / L"shell test";
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    ComApartment apartment_;
    WindowsShell shell_;
    std::filesystem::path folder_;
};

const std::vector<ShortcutProperty> FilledProperties = {
    {L"TargetPath", L"C:\\windows\\notepad.exe"}, {L"Arguments", L"/p \"a b\""},     {L"WorkingDirectory", L"C:\\"},
    {L"Description", L"作業マニュアル"},          {L"IconLocation", L"C:\\i.ico,2"}, {L"Hotkey", L""}};

/// The shortcut file as the shell itself reads it.
struct LoadedShortcut {
    std::wstring Target;
    std::wstring Arguments;
    std::wstring Folder;
    std::wstring Description;
    std::wstring Icon;
    int IconIndex = 0;
};

LoadedShortcut Load(const std::wstring& file) {
    void* made = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &made),
                  "CoCreateInstance", file);
    const ComPointer<IShellLinkW> link(static_cast<IShellLinkW*>(made));
    ThrowIfFailed(QueryInterface<IPersistFile>(*link)->Load(file.c_str(), STGM_READ), "Load", file);
    LoadedShortcut loaded;
    wchar_t text[MAX_PATH] = L"";
    link->GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH);
    loaded.Target = text;
    link->GetArguments(text, MAX_PATH);
    loaded.Arguments = text;
    link->GetWorkingDirectory(text, MAX_PATH);
    loaded.Folder = text;
    link->GetDescription(text, MAX_PATH);
    loaded.Description = text;
    link->GetIconLocation(text, MAX_PATH, &loaded.IconIndex);
    loaded.Icon = text;
    return loaded;
}

TEST_F(ShellTest, ShortcutFileHoldsWhatWasPut) {
    const std::wstring file = (folder_ / L"マニュアル.lnk").wstring();
    shell_.SaveShortcut(file, FilledProperties, 1);
    const LoadedShortcut loaded = Load(file);
    EXPECT_EQ(loaded.Target, L"C:\\windows\\notepad.exe");
    EXPECT_EQ(loaded.Arguments, L"/p \"a b\"");
    EXPECT_EQ(loaded.Folder, L"C:\\");
    EXPECT_EQ(loaded.Description, L"作業マニュアル");
    EXPECT_EQ(loaded.Icon, L"C:\\i.ico");
    EXPECT_EQ(loaded.IconIndex, 2);
}

TEST_F(ShellTest, ShortcutThatCannotBeWrittenThrows) {
    const std::wstring file = (folder_ / L"no such folder" / L"a.lnk").wstring();
    EXPECT_THROW(shell_.SaveShortcut(file, FilledProperties, std::nullopt), PlatformError);
}

/// A scripting shell whose shortcuts refuse the property of the given name.
RegisteredClass::Maker ScriptingShell(Script& script, const std::wstring& refused) {
    return [&script, refused] {
        auto shell = ScriptedObject::Make(script, L"Shell");
        shell->Method(L"CreateShortcut", [&script, refused](auto) {
            auto shortcut = ScriptedObject::Make(script, L"Shortcut");
            for (const wchar_t* name : {L"TargetPath", L"Hotkey", L"WindowStyle"}) {
                shortcut->Settable(name, [=](auto) -> ComValue {
                    if (name == refused) {
                        throw ScriptedError{E_NOTIMPL};
                    }
                    return ComValue();
                });
            }
            shortcut->Method(L"Save", [](auto) { return ComValue(); });
            return ObjectValue(std::move(shortcut));
        });
        return ComPointer<IDispatch>(shell.release());
    };
}

TEST_F(ShellTest, PropertiesArePutInOrderAndSavedLast) {
    Script script;
    const RegisteredClass scriptingShell(L"WScript.Shell", ScriptingShell(script, L"Hotkey"));
    shell_.SaveShortcut(L"C:\\a.lnk", {{L"TargetPath", L"x"}, {L"Hotkey", L""}}, 7);
    shell_.SaveShortcut(L"C:\\b.lnk", {{L"TargetPath", L"y"}}, std::nullopt);
    const std::vector<std::wstring> expected = {L"call Shell.CreateShortcut(\"C:\\a.lnk\")",
                                                L"put Shortcut.TargetPath(\"x\")",
                                                L"put Shortcut.Hotkey(\"\")",
                                                L"put Shortcut.WindowStyle(7)",
                                                L"call Shortcut.Save()",
                                                L"call Shell.CreateShortcut(\"C:\\b.lnk\")",
                                                L"put Shortcut.TargetPath(\"y\")",
                                                L"call Shortcut.Save()"};
    EXPECT_EQ(script.Calls, expected);
    EXPECT_EQ(script.LiveObjects, 0);
}

TEST_F(ShellTest, RefusedTargetIsAnErrorAndNothingIsSaved) {
    Script script;
    const RegisteredClass scriptingShell(L"WScript.Shell", ScriptingShell(script, L"TargetPath"));
    EXPECT_THROW(shell_.SaveShortcut(L"C:\\a.lnk", {{L"TargetPath", L"x"}}, std::nullopt), PlatformError);
    EXPECT_EQ(script.Calls.back(), L"put Shortcut.TargetPath(\"x\")");
}

TEST_F(ShellTest, SpecialFoldersAreFoundByNumber) {
    for (const int number : {CSIDL_PROGRAMS, CSIDL_COMMON_DESKTOPDIRECTORY}) {
        const std::wstring path = shell_.SpecialFolder(number);
        EXPECT_TRUE(std::filesystem::is_directory(path)) << number;
    }
    EXPECT_EQ(shell_.SpecialFolder(9999), L"");
}

TEST_F(ShellTest, OpenDocumentSaysWhetherTheShellCould) {
    EXPECT_LT(shell_.OpenDocument(L"Open", (folder_ / L"install.html").wstring(), SW_SHOWMAXIMIZED), 32);
    // A doubled backslash in the path is accepted.
    EXPECT_GE(shell_.OpenDocument(L"Open", L"C:\\windows\\\\system32\\hostname.exe", SW_HIDE), 32);
}

}  // namespace
}  // namespace mip
