#include <shlobj.h>

#include <filesystem>

#include "platform/PlatformError.h"
#include "platform/windows/WindowsBrowsers.h"
#include "platform/windows/WindowsShell.h"
#include "tests/ScratchFolder.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

/// A value that should be an object and is none.
const ComValue NoObject = [] {
    ComValue value;
    value.Receive()->vt = VT_DISPATCH;
    return value;
}();

TEST_F(AutomationTest, FailuresCarryTheObjectsOwnCodeAndDescription) {
    const ComObject thing(script_.MakeObject(L"Thing"));
    const std::tuple<const wchar_t*, Answer, HRESULT, std::wstring> cases[] = {
        {L"call Thing.Do()", {.Code = RPC_E_DISCONNECTED}, RPC_E_DISCONNECTED, L""},
        {L"call Thing.Do()", {.Code = E_ACCESSDENIED, .Description = L"not now"}, E_ACCESSDENIED, L"not now"},
        {L"call Thing.Do()", {.Code = 1004, .Description = L"no sheet"}, HRESULT(0x800A03EC), L"no sheet"},
        {L"call Thing.Do()", {.IsDeferred = true}, E_ABORT, L"filled in when asked"},
        {L"name Thing.Do", {.Code = DISP_E_UNKNOWNNAME}, DISP_E_UNKNOWNNAME, L""}};
    for (const auto& [step, answer, code, text] : cases) {
        script_.Expect({{step, answer}});
        try {
            thing.Call(L"Do");
            ADD_FAILURE() << "nothing was thrown: " << code;
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.Code(), static_cast<std::uint32_t>(code));
            EXPECT_EQ(error.Object(), L"Do");
            EXPECT_EQ(error.Text(), text);
        }
    }
    script_.Expect({{L"get Thing.None()", {NoObject}}, {L"get Thing.Word()", {L"four"}}});
    EXPECT_EQ(CodeOf([&] { thing.Get(L"None").Object(); }), static_cast<std::uint32_t>(E_POINTER));
    EXPECT_EQ(CodeOf([&] { thing.Get(L"Word").Integer(); }), static_cast<std::uint32_t>(DISP_E_TYPEMISMATCH));
    EXPECT_EQ(CodeOf([] { ComObject::Create(L"Not.Registered"); }), static_cast<std::uint32_t>(CO_E_CLASSSTRING));
}

TEST_F(AutomationTest, OpenWindowsLeavesOutWhatCannotBeQueried) {
    const Answer window{.Object = L"Window"};
    script_.Expect({{L"call Shell.Windows()", {.Object = L"Windows"}},
                    {L"get Windows.Count()", {6}},
                    {L"call Windows.Item(0)", {NoObject}},
                    {L"call Windows.Item(1)", window},
                    {L"get Window.Document()", {.Code = RPC_E_DISCONNECTED}},
                    {L"call Windows.Item(2)", window},
                    {L"get Window.Document()", {NoObject}},
                    {L"call Windows.Item(3)", window},
                    {L"get Window.Document()", {.Object = L"HTMLDocument"}},
                    {L"get HTMLDocument.URL()", {L"file://D:\\index.html"}},
                    {L"call Windows.Item(4)", window},
                    {L"get Window.Document()", {.Object = L"IShellFolderViewDual"}},
                    {L"get IShellFolderViewDual.URL()", {L""}},
                    {L"call Windows.Item(5)", window},
                    {L"get Window.Document()", {.Object = L"Undescribed"}},
                    {L"put Window.Visible(true)", {}}});
    const RegisteredClass shell(L"Shell.Application", script_, L"Shell");
    const auto found = WindowsBrowsers().OpenWindows();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].DocumentType, L"HTMLDocument");
    EXPECT_EQ(found[0].Address, L"file://D:\\index.html");
    EXPECT_EQ(found[1].DocumentType, L"IShellFolderViewDual");
    found[0].Window->Show();
}

TEST_F(AutomationTest, BrowserIsDrivenByTheNamesOfItsObject) {
    script_.Expect({{L"call Browser.Navigate2(\"D:\\index.html\")", {}},
                    {L"get Browser.Busy()", {false}},
                    {L"get Browser.ReadyState()", {4}},
                    {L"put Browser.Visible(true)", {}},
                    {L"get Browser.Busy()", {.Code = RPC_E_CALL_REJECTED}},
                    {L"get Browser.ReadyState()", {.Code = RPC_E_SERVERCALL_RETRYLATER}},
                    {L"get Browser.Busy()", {.Code = RPC_E_DISCONNECTED}},
                    {L"get Browser.ReadyState()", {.Code = RPC_E_DISCONNECTED}},
                    {L"call Browser.Quit()", {}},
                    {L"create Browser", {.Code = E_ACCESSDENIED}}});
    const RegisteredClass internetExplorer(L"InternetExplorer.Application", script_, L"Browser");
    const auto browser = WindowsBrowsers().StartBrowser();
    browser->Navigate(L"D:\\index.html");
    EXPECT_FALSE(browser->IsBusy());
    EXPECT_EQ(browser->ReadyState(), 4);
    browser->Show();
    EXPECT_TRUE(browser->IsBusy()) << "it puts calls off";
    EXPECT_NE(browser->ReadyState(), 4);
    EXPECT_THROW(browser->IsBusy(), PlatformError) << "it is gone";
    EXPECT_THROW(browser->ReadyState(), PlatformError);
    browser->Quit();
    EXPECT_EQ(CodeOf([] { WindowsBrowsers().StartBrowser(); }), static_cast<std::uint32_t>(E_ACCESSDENIED));
}

const std::vector<ShortcutProperty> FilledProperties = {
    {L"TargetPath", L"C:\\windows\\notepad.exe"}, {L"Arguments", L"/p \"a b\""},     {L"WorkingDirectory", L"C:\\"},
    {L"Description", L"作業マニュアル"},          {L"IconLocation", L"C:\\i.ico,2"}, {L"Hotkey", L""}};

TEST_F(AutomationTest, ShortcutFileHoldsWhatWasPut) {
    const ScratchFolder folder;
    const std::wstring file = folder.Below(L"マニュアル.lnk");
    WindowsShell().SaveShortcut(file, FilledProperties, 1);

    void* made = nullptr;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &made), S_OK);
    const ComPointer<IShellLinkW> link(static_cast<IShellLinkW*>(made));
    ASSERT_EQ(QueryInterface<IPersistFile>(*link)->Load(file.c_str(), STGM_READ), S_OK);
    std::array<wchar_t[MAX_PATH], 5> texts{};
    int icon = 0;
    link->GetPath(texts[0], MAX_PATH, nullptr, SLGP_RAWPATH);
    link->GetArguments(texts[1], MAX_PATH);
    link->GetWorkingDirectory(texts[2], MAX_PATH);
    link->GetDescription(texts[3], MAX_PATH);
    link->GetIconLocation(texts[4], MAX_PATH, &icon);
    for (std::size_t index = 0; index < 4; ++index) {
        EXPECT_EQ(texts[index], FilledProperties[index].Value);
    }
    EXPECT_STREQ(texts[4], L"C:\\i.ico");
    EXPECT_EQ(icon, 2);
    const std::wstring nowhere = folder.Below(L"no such folder\\a.lnk");
    EXPECT_THROW(WindowsShell().SaveShortcut(nowhere, FilledProperties, std::nullopt), PlatformError);
}

TEST_F(AutomationTest, ShortcutsPropertiesArePutInOrderAndSavedLast) {
    const Answer notImplemented{.Code = E_NOTIMPL};
    script_.Expect({{L"call Shell.CreateShortcut(\"C:\\a.lnk\")", {.Object = L"Shortcut"}},
                    {L"put Shortcut.TargetPath(\"x\")", {}},
                    {L"put Shortcut.Hotkey(\"\")", notImplemented},
                    {L"put Shortcut.WindowStyle(7)", {}},
                    {L"call Shortcut.Save()", {}},
                    {L"call Shell.CreateShortcut(\"C:\\b.lnk\")", {.Object = L"Shortcut"}},
                    {L"put Shortcut.TargetPath(\"y\")", {}},
                    {L"call Shortcut.Save()", {}},
                    {L"call Shell.CreateShortcut(\"C:\\c.lnk\")", {.Object = L"Shortcut"}},
                    {L"put Shortcut.TargetPath(\"z\")", notImplemented}});
    const RegisteredClass scriptingShell(L"WScript.Shell", script_, L"Shell");
    WindowsShell().SaveShortcut(L"C:\\a.lnk", {{L"TargetPath", L"x"}, {L"Hotkey", L""}}, 7);
    WindowsShell().SaveShortcut(L"C:\\b.lnk", {{L"TargetPath", L"y"}}, std::nullopt);
    EXPECT_THROW(WindowsShell().SaveShortcut(L"C:\\c.lnk", {{L"TargetPath", L"z"}}, std::nullopt), PlatformError);
}

TEST_F(AutomationTest, TheShellFindsFoldersByNumberAndOpensDocuments) {
    for (const int number : {CSIDL_PROGRAMS, CSIDL_COMMON_DESKTOPDIRECTORY}) {
        EXPECT_TRUE(std::filesystem::is_directory(WindowsShell().SpecialFolder(number))) << number;
    }
    EXPECT_EQ(WindowsShell().SpecialFolder(9999), L"");

    EXPECT_LT(WindowsShell().OpenDocument(L"Open", ScratchFolder().Below(L"none.html"), SW_SHOWMAXIMIZED), 32);
    // A doubled backslash in the path is accepted.
    EXPECT_GE(WindowsShell().OpenDocument(L"Open", L"C:\\windows\\\\system32\\hostname.exe", SW_HIDE), 32);
}

}  // namespace
}  // namespace mip
