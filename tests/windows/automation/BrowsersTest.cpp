#include <gtest/gtest.h>

#include "platform/PlatformError.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/WindowsBrowsers.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

ComValue Nothing(ScriptedObject::Arguments) {
    return ComValue();
}

class BrowsersTest : public testing::Test {
  protected:
    ComPointer<ScriptedObject> MakeWindow(const std::wstring& className, const std::wstring& interfaceName,
                                          const std::wstring& address) {
        auto document = ScriptedObject::Make(script_, L"Document");
        document->Described(className, interfaceName).Property(L"URL", ComValue(address));
        auto window = ScriptedObject::Make(script_, L"Window");
        window->Property(L"Document", ObjectValue(std::move(document))).Settable(L"Visible", Nothing);
        return window;
    }

    /// A shell whose collection holds these windows.
    RegisteredClass::Maker ShellWith(std::vector<ComValue> windows) {
        return [this, windows = std::move(windows)] {
            auto collection = ScriptedObject::Make(script_, L"Windows");
            collection->Property(L"Count", ComValue(static_cast<std::int32_t>(windows.size())))
                .Method(L"Item", [windows](ScriptedObject::Arguments arguments) {
                    return windows.at(static_cast<std::size_t>(arguments[0].lVal));
                });
            auto shell = ScriptedObject::Make(script_, L"Shell");
            shell->Method(L"Windows", [held = ObjectValue(std::move(collection))](auto) { return held; });
            return ComPointer<IDispatch>(shell.release());
        };
    }

    ComApartment apartment_;
    Script script_;
    WindowsBrowsers browsers_;
};

TEST_F(BrowsersTest, OpenWindowsLeavesOutWhatCannotBeQueried) {
    auto closing = ScriptedObject::Make(script_, L"Window");
    closing->Property(L"Document", [](auto) -> ComValue { throw ScriptedError{RPC_E_DISCONNECTED}; });
    auto empty = ScriptedObject::Make(script_, L"Window");
    empty->Property(L"Document", ObjectValue(nullptr));
    {
        std::vector<ComValue> windows;
        windows.push_back(ObjectValue(nullptr));
        windows.push_back(ObjectValue(std::move(closing)));
        windows.push_back(ObjectValue(std::move(empty)));
        windows.push_back(ObjectValue(MakeWindow(L"HTMLDocument", L"DispHTMLDocument", L"file://D:\\index.html")));
        windows.push_back(ObjectValue(MakeWindow(L"", L"IShellFolderViewDual", L"")));
        windows.push_back(ObjectValue(MakeWindow(L"", L"", L"undescribed")));
        const RegisteredClass shell(L"Shell.Application", ShellWith(std::move(windows)));

        const auto found = browsers_.OpenWindows();
        ASSERT_EQ(found.size(), 2u);
        EXPECT_EQ(found[0].DocumentType, L"HTMLDocument");
        EXPECT_EQ(found[0].Address, L"file://D:\\index.html");
        EXPECT_EQ(found[1].DocumentType, L"IShellFolderViewDual");

        script_.Calls.clear();
        found[0].Window->Show();
        EXPECT_EQ(script_.Calls, std::vector<std::wstring>{L"put Window.Visible(true)"});
    }
    EXPECT_EQ(script_.LiveObjects, 0);
}

TEST_F(BrowsersTest, BrowserIsDrivenByTheNamesOfItsObject) {
    const RegisteredClass internetExplorer(L"InternetExplorer.Application", [this] {
        auto browser = ScriptedObject::Make(script_, L"Browser");
        browser->Method(L"Navigate2", Nothing)
            .Property(L"Busy", ComValue(true))
            .Property(L"ReadyState", ComValue(4))
            .Settable(L"Visible", Nothing);
        return ComPointer<IDispatch>(browser.release());
    });
    {
        const auto browser = browsers_.StartBrowser();
        browser->Navigate(L"D:\\index.html");
        EXPECT_TRUE(browser->IsBusy());
        EXPECT_EQ(browser->ReadyState(), 4);
        browser->Show();
    }
    const std::vector<std::wstring> expected = {L"call Browser.Navigate2(\"D:\\index.html\")", L"get Browser.Busy()",
                                                L"get Browser.ReadyState()", L"put Browser.Visible(true)"};
    EXPECT_EQ(script_.Calls, expected);
    EXPECT_EQ(script_.LiveObjects, 0);
}

TEST_F(BrowsersTest, BrowserThatPutsCallsOffIsBusyAndOneThatIsGoneThrows) {
    HRESULT state = RPC_E_CALL_REJECTED;
    const RegisteredClass internetExplorer(L"InternetExplorer.Application", [this, &state] {
        auto browser = ScriptedObject::Make(script_, L"Browser");
        const auto refuse = [&state](auto) -> ComValue { throw ScriptedError{state}; };
        browser->Property(L"Busy", refuse).Property(L"ReadyState", refuse);
        return ComPointer<IDispatch>(browser.release());
    });
    const auto browser = browsers_.StartBrowser();
    EXPECT_TRUE(browser->IsBusy());
    EXPECT_NE(browser->ReadyState(), 4);

    state = RPC_E_DISCONNECTED;
    EXPECT_THROW(browser->IsBusy(), PlatformError);
    EXPECT_THROW(browser->ReadyState(), PlatformError);
}

TEST_F(BrowsersTest, NoBrowserObjectIsAnError) {
    const RegisteredClass internetExplorer(L"InternetExplorer.Application",
                                           []() -> ComPointer<IDispatch> { throw ScriptedError{E_ACCESSDENIED}; });
    EXPECT_THROW(browsers_.StartBrowser(), PlatformError);
}

}  // namespace
}  // namespace mip
