#include <gtest/gtest.h>

#include <windows.h>
#include <shlobj.h>

#include <filesystem>

#include "platform/PlatformError.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/ComAutomation.h"
#include "platform/windows/WindowsBrowsers.h"
#include "platform/windows/WindowsShell.h"
#include "tests/ScratchFolder.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

using Calls = std::vector<std::wstring>;

class Automation : public testing::Test {
  protected:
    ~Automation() override { EXPECT_EQ(script_.LiveObjects, 0) << "a reference was not released"; }

    ComApartment apartment_;
    Script script_;
};

TEST_F(Automation, FailuresCarryTheObjectsOwnCodeAndDescription) {
    const std::tuple<Answer, std::uint32_t, std::wstring> cases[] = {
        {{.Code = RPC_E_DISCONNECTED}, 0x80010108, L""},
        {{.Code = E_ACCESSDENIED, .Description = L"not now"}, 0x80070005, L"not now"},
        {{.Code = 1004, .Description = L"no such sheet"}, 0x800A03EC, L"no such sheet"},
        {{.IsDeferred = true}, 0x80004004, L"filled in when asked"}};
    for (const auto& [answer, code, text] : cases) {
        script_.Answers[L"call Thing.Fail"] = {answer};
        try {
            MakeScripted(script_, L"Thing").Call(L"Fail");
            ADD_FAILURE() << "nothing was thrown: " << code;
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.Code(), code);
            EXPECT_EQ(error.Object(), L"Fail");
            EXPECT_EQ(error.Text(), text);
        }
    }
}

TEST_F(Automation, WhatIsNotThereIsAnErrorOfItsKind) {
    script_.Answers = {{L"get Thing.Nothing", {{NoObject()}}}, {L"get Thing.Word", {{L"four"}}}};
    const ComObject thing = MakeScripted(script_, L"Thing");
    const std::pair<HRESULT, std::function<void()>> cases[] = {
        {DISP_E_UNKNOWNNAME, [&] { thing.Call(L"Absent"); }},
        {DISP_E_MEMBERNOTFOUND, [&] { thing.Put(L"Word", 1); }},
        {E_POINTER, [&] { thing.Get(L"Nothing").Object(); }},
        {DISP_E_TYPEMISMATCH, [&] { thing.Get(L"Word").Integer(); }},
        {CO_E_CLASSSTRING, [] { ComObject::Create(L"Nobody.Registered.This"); }}};
    for (const auto& [code, action] : cases) {
        EXPECT_EQ(CodeOf(action), static_cast<std::uint32_t>(code));
    }
}

TEST_F(Automation, OpenWindowsLeavesOutWhatCannotBeQueried) {
    script_.Answers = {{L"call Shell.Windows", {{.Object = L"Windows"}}},
                       {L"get Windows.Count", {{6}}},
                       {L"call Windows.Item",
                        {{NoObject()},
                         {.Object = L"Closing"},
                         {.Object = L"Empty"},
                         {.Object = L"Window"},
                         {.Object = L"Window"},
                         {.Object = L"Window"}}},
                       {L"get Closing.Document", {{.Code = RPC_E_DISCONNECTED}}},
                       {L"get Empty.Document", {{NoObject()}}},
                       {L"get Window.Document", {{.Object = L"Page"}, {.Object = L"Folder"}, {.Object = L"Unknown"}}},
                       {L"get Page.URL", {{L"file://D:\\index.html"}}},
                       {L"get Folder.URL", {{L""}}},
                       {L"get Unknown.URL", {{L"undescribed"}}},
                       {L"put Window.Visible", {{}}}};
    script_.Types = {{L"Page", {L"HTMLDocument", L"DispHTMLDocument"}}, {L"Folder", {L"", L"IShellFolderViewDual"}}};
    const RegisteredClass shell(L"Shell.Application", script_, L"Shell");
    const auto found = WindowsBrowsers().OpenWindows();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].DocumentType, L"HTMLDocument");
    EXPECT_EQ(found[0].Address, L"file://D:\\index.html");
    EXPECT_EQ(found[1].DocumentType, L"IShellFolderViewDual");
    EXPECT_EQ(script_.Calls[3], L"call Windows.Item(1)");

    found[0].Window->Show();
    EXPECT_EQ(script_.Calls.back(), L"put Window.Visible(true)");
}

TEST_F(Automation, BrowserIsDrivenByTheNamesOfItsObject) {
    script_.Answers = {
        {L"call Browser.Navigate2", {{}}},
        {L"get Browser.Busy", {{true}, {.Code = RPC_E_CALL_REJECTED}, {.Code = RPC_E_DISCONNECTED}}},
        {L"get Browser.ReadyState", {{4}, {.Code = RPC_E_SERVERCALL_RETRYLATER}, {.Code = RPC_E_DISCONNECTED}}},
        {L"put Browser.Visible", {{}}}};
    const RegisteredClass internetExplorer(L"InternetExplorer.Application", script_, L"Browser");
    const auto browser = WindowsBrowsers().StartBrowser();
    browser->Navigate(L"D:\\index.html");
    EXPECT_TRUE(browser->IsBusy());
    EXPECT_EQ(browser->ReadyState(), 4);
    browser->Show();
    EXPECT_EQ(script_.Calls, (Calls{L"call Browser.Navigate2(\"D:\\index.html\")", L"get Browser.Busy()",
                                    L"get Browser.ReadyState()", L"put Browser.Visible(true)"}));

    EXPECT_TRUE(browser->IsBusy()) << "it puts calls off";
    EXPECT_NE(browser->ReadyState(), 4);
    EXPECT_THROW(browser->IsBusy(), PlatformError) << "it is gone";
    EXPECT_THROW(browser->ReadyState(), PlatformError);

    script_.Answers[L"create Browser"] = {{.Code = E_ACCESSDENIED}};
    EXPECT_THROW(WindowsBrowsers().StartBrowser(), PlatformError);
}

const std::vector<ShortcutProperty> FilledProperties = {
    {L"TargetPath", L"C:\\windows\\notepad.exe"}, {L"Arguments", L"/p \"a b\""},     {L"WorkingDirectory", L"C:\\"},
    {L"Description", L"作業マニュアル"},          {L"IconLocation", L"C:\\i.ico,2"}, {L"Hotkey", L""}};

TEST_F(Automation, ShortcutFileHoldsWhatWasPut) {
    const ScratchFolder folder;
    const std::wstring file = folder.Below(L"マニュアル.lnk");
    WindowsShell().SaveShortcut(file, FilledProperties, 1);

    void* made = nullptr;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, &made), S_OK);
    const ComPointer<IShellLinkW> link(static_cast<IShellLinkW*>(made));
    ASSERT_EQ(QueryInterface<IPersistFile>(*link)->Load(file.c_str(), STGM_READ), S_OK);
    wchar_t text[MAX_PATH] = L"";
    link->GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH);
    EXPECT_STREQ(text, L"C:\\windows\\notepad.exe");
    link->GetArguments(text, MAX_PATH);
    EXPECT_STREQ(text, L"/p \"a b\"");
    link->GetWorkingDirectory(text, MAX_PATH);
    EXPECT_STREQ(text, L"C:\\");
    link->GetDescription(text, MAX_PATH);
    EXPECT_STREQ(text, L"作業マニュアル");
    int icon = 0;
    link->GetIconLocation(text, MAX_PATH, &icon);
    EXPECT_STREQ(text, L"C:\\i.ico");
    EXPECT_EQ(icon, 2);

    const std::wstring nowhere = folder.Below(L"no such folder\\a.lnk");
    EXPECT_THROW(WindowsShell().SaveShortcut(nowhere, FilledProperties, std::nullopt), PlatformError);
}

TEST_F(Automation, ShortcutsPropertiesArePutInOrderAndSavedLast) {
    script_.Answers = {{L"call Shell.CreateShortcut", {{.Object = L"Shortcut"}}},
                       {L"put Shortcut.TargetPath", {{}, {}, {.Code = E_NOTIMPL}}},
                       {L"put Shortcut.Hotkey", {{.Code = E_NOTIMPL}}},
                       {L"put Shortcut.WindowStyle", {{}}},
                       {L"call Shortcut.Save", {{}}}};
    const RegisteredClass scriptingShell(L"WScript.Shell", script_, L"Shell");
    WindowsShell().SaveShortcut(L"C:\\a.lnk", {{L"TargetPath", L"x"}, {L"Hotkey", L""}}, 7);
    WindowsShell().SaveShortcut(L"C:\\b.lnk", {{L"TargetPath", L"y"}}, std::nullopt);
    EXPECT_THROW(WindowsShell().SaveShortcut(L"C:\\c.lnk", {{L"TargetPath", L"z"}}, std::nullopt), PlatformError);
    EXPECT_EQ(script_.Calls, (Calls{L"call Shell.CreateShortcut(\"C:\\a.lnk\")", L"put Shortcut.TargetPath(\"x\")",
                                    L"put Shortcut.Hotkey(\"\")", L"put Shortcut.WindowStyle(7)",
                                    L"call Shortcut.Save()", L"call Shell.CreateShortcut(\"C:\\b.lnk\")",
                                    L"put Shortcut.TargetPath(\"y\")", L"call Shortcut.Save()",
                                    L"call Shell.CreateShortcut(\"C:\\c.lnk\")", L"put Shortcut.TargetPath(\"z\")"}));
}

TEST_F(Automation, TheShellFindsFoldersByNumberAndOpensDocuments) {
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
