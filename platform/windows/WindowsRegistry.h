#pragma once

#include "platform/Registry.h"

namespace mip {

class WindowsRegistry : public Registry {
  public:
    std::optional<std::wstring> ReadString(Hive hive, const std::wstring& key, const std::wstring& name) override;
    void WriteString(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value) override;
    void RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) override;
    void RemoveKey(Hive hive, const std::wstring& key) override;
    std::vector<std::pair<std::wstring, std::wstring>> ListValues(Hive hive, const std::wstring& key) override;
};

}  // namespace mip
