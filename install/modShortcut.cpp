#include "install/modShortcut.h"

#include <exception>
#include <vector>

#include "platform/Files.h"
#include "platform/Shell.h"

namespace mip {

ShortcutSpec ProgramShortcut(const std::wstring& target) {
    ShortcutSpec spec;
    spec.Target = target;
    spec.WorkingFolder = L"C:\\";
    spec.WindowStyle = 1;
    return spec;
}

std::wstring GetShortcutPath(Platform& platform, int specialFolder, const std::wstring& name) {
    return platform.Shell.SpecialFolder(specialFolder) + L"\\" + name + L".lnk";
}

bool CreateShortcut(Platform& platform, const std::wstring& file, const ShortcutSpec& spec, bool setEmptyFields) {
    const ShortcutProperty all[] = {
        {L"TargetPath", spec.Target},       {L"Arguments", spec.Arguments}, {L"WorkingDirectory", spec.WorkingFolder},
        {L"Description", spec.Description}, {L"IconLocation", spec.Icon},   {L"Hotkey", spec.HotKey},
    };
    std::vector<ShortcutProperty> properties;
    for (const ShortcutProperty& property : all) {
        if (setEmptyFields || !property.Value.empty()) {
            properties.push_back(property);
        }
    }
    const bool setStyle = setEmptyFields || spec.WindowStyle != 0;
    const auto style = setStyle ? std::optional(spec.WindowStyle) : std::nullopt;
    try {
        platform.Shell.SaveShortcut(file, properties, style);
        return true;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("making a shortcut", error);
        return false;
    }
}

void CreateProgramShortcut(Platform& platform, const std::wstring& file, const std::wstring& target) {
    if (!platform.Files.Exists(file)) {
        // A workshop can do without the shortcut; its failure is nobody's concern.
        (void)CreateShortcut(platform, file, ProgramShortcut(target), true);
    }
}

void CreateDesktopShortcut(Platform& platform, const std::wstring& name, const std::wstring& target) {
    CreateProgramShortcut(platform, GetShortcutPath(platform, specialFolders::CommonDesktop, name), target);
}

}  // namespace mip
