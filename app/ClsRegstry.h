#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/Registry.h"

namespace mip {

/// Per-user settings of an application's section, in the store that desktop programs of this family share:
/// HKEY_CURRENT_USER, "Software\Vantor\Settings\<AppName>\<Section>".
class ClsRegstry {
  public:
    explicit ClsRegstry(Registry& registry) : registry_(registry) {}

    std::wstring AppName;
    std::wstring Section;

    /// True when the section holds at least one setting; errors give false.
    bool ChkReg();
    /// The setting; an absent one is stored with the default first.
    std::wstring GetReg(const std::wstring& key, const std::wstring& defaultValue);
    void SavReg(const std::wstring& key, const std::wstring& value);
    /// Deletes a setting, or the whole section when the key is "".
    void DelReg(const std::wstring& key);
    /// All settings; errors give an empty list.
    std::vector<std::pair<std::wstring, std::wstring>> GetAllReg();

  private:
    std::wstring StoreKey() const;

    Registry& registry_;
};

}  // namespace mip
