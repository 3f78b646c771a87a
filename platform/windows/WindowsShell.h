#pragma once

#include "platform/Shell.h"

namespace mip {

class WindowsShell : public Shell {
  public:
    std::intptr_t OpenDocument(const std::wstring& verb, const std::wstring& document, int showCommand) override;
    std::wstring SpecialFolder(int number) override;
    void SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>& properties,
                      std::optional<std::int16_t> windowStyle) override;
};

}  // namespace mip
