#include "platform/windows/WindowsBrowsers.h"

#include <windows.h>
#include <oleauto.h>
#include <ocidl.h>

#include <optional>
#include <utility>

#include "platform/PlatformError.h"
#include "platform/windows/ComAutomation.h"

namespace mip {

namespace {

/// A browser that is at work in its own process may put calls off; it is then neither idle nor gone.
bool IsPutOff(const PlatformError& error) {
    return error.Code() == static_cast<std::uint32_t>(RPC_E_CALL_REJECTED) ||
           error.Code() == static_cast<std::uint32_t>(RPC_E_SERVERCALL_RETRYLATER);
}

class AutomationBrowser : public BrowserWindow {
  public:
    explicit AutomationBrowser(ComObject browser) : browser_(std::move(browser)) {}

    void Navigate(const std::wstring& address) override { browser_.Call(L"Navigate2", {address}); }
    bool IsBusy() override { return GetUnlessPutOff(L"Busy", true).Boolean(); }
    int ReadyState() override { return GetUnlessPutOff(L"ReadyState", 0).Integer(); }
    void Show() override { browser_.Put(L"Visible", true); }
    void Quit() override { browser_.Call(L"Quit"); }

  private:
    ComValue GetUnlessPutOff(const std::wstring& property, const ComValue& whenPutOff) {
        try {
            return browser_.Get(property);
        } catch (const PlatformError& error) {
            if (!IsPutOff(error)) {
                throw;
            }
            return whenPutOff;
        }
    }

    ComObject browser_;
};

/// The class's description where the object has one, else that of its automation interface.
ComPointer<ITypeInfo> DescriptionOf(IDispatch& object) {
    ITypeInfo* description = nullptr;
    const auto classProvider = QueryInterface<IProvideClassInfo>(object);
    if (!classProvider || FAILED(classProvider->GetClassInfo(&description))) {
        ThrowIfFailed(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &description), "GetTypeInfo", L"");
    }
    return ComPointer<ITypeInfo>(description);
}

std::wstring TypeName(IDispatch& object) {
    const auto description = DescriptionOf(object);
    BSTR name = nullptr;
    const HRESULT result = description->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    ThrowIfFailed(result, "GetDocumentation", L"");
    const std::wstring text(name ? name : L"", SysStringLen(name));
    SysFreeString(name);
    return text;
}

/// Nothing for a window that went meanwhile, or that shows no document.
std::optional<OpenWindow> Describe(const ComObject& windows, std::int32_t index) {
    try {
        ComObject window = windows.Call(L"Item", {index}).Object();
        const ComObject document = window.Get(L"Document").Object();
        OpenWindow found;
        found.DocumentType = TypeName(document.Raw());
        found.Address = document.Get(L"URL").Text();
        found.Window = std::make_unique<AutomationBrowser>(std::move(window));
        return found;
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

}  // namespace

std::vector<OpenWindow> WindowsBrowsers::OpenWindows() {
    const ComObject shell = ComObject::Create(L"Shell.Application");
    const ComObject windows = shell.Call(L"Windows").Object();
    std::vector<OpenWindow> found;
    const std::int32_t count = windows.Get(L"Count").Integer();
    for (std::int32_t index = 0; index < count; ++index) {
        if (auto window = Describe(windows, index)) {
            found.push_back(std::move(*window));
        }
    }
    return found;
}

std::unique_ptr<BrowserWindow> WindowsBrowsers::StartBrowser() {
    return std::make_unique<AutomationBrowser>(ComObject::Create(L"InternetExplorer.Application"));
}

}  // namespace mip
