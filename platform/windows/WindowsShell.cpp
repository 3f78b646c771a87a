#include "platform/windows/WindowsShell.h"

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

#include <array>

#include "platform/PlatformError.h"
#include "platform/windows/ComAutomation.h"
#include "platform/windows/Handle.h"

namespace mip {

namespace {

void PutProperty(const ComObject& shortcut, const ShortcutProperty& property) {
    try {
        shortcut.Put(property.Name, property.Value);
    } catch (const PlatformError& error) {
        // Wine's scripting shell makes whole shortcuts but has no hot keys; the program never sets one that matters.
        const bool hasNoHotKeys = property.Name == L"Hotkey" && error.Code() == static_cast<std::uint32_t>(E_NOTIMPL);
        if (!hasNoHotKeys) {
            throw;
        }
    }
}

}  // namespace

std::intptr_t WindowsShell::OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) {
    return reinterpret_cast<std::intptr_t>(
        ShellExecuteW(GetActiveWindow(), verb.c_str(), document.c_str(), nullptr, nullptr, showCommand));
}

std::wstring WindowsShell::SpecialFolder(int number) {
    ItemList location;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, number, location.Receive()))) {
        return L"";
    }
    std::array<wchar_t, MAX_PATH> path{};
    if (!SHGetPathFromIDListW(location.Get(), path.data())) {
        return L"";
    }
    return path.data();
}

void WindowsShell::SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                                std::optional<std::int16_t> windowStyle) {
    const ComObject scriptingShell = ComObject::Create(L"WScript.Shell");
    const ComObject shortcut = scriptingShell.Call(L"CreateShortcut", {file}).Object();
    for (const ShortcutProperty& property : properties) {
        PutProperty(shortcut, property);
    }
    if (windowStyle) {
        shortcut.Put(L"WindowStyle", std::int32_t{*windowStyle});
    }
    shortcut.Call(L"Save");
}

}  // namespace mip
