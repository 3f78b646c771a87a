#pragma once

#include <map>

#include "platform/Registry.h"
#include "tests/native/fakes/Faults.h"
#include "text/TextTools.h"

namespace mip {

/// String values, listed in the order of their names.
class FakeRegistry : public Registry, private Counted {
  public:
    using Counted::Counted;

    /// By hive and key, then by name, the names in capitals: a value's name and text.
    using Keys = std::map<std::pair<Hive, std::wstring>, std::map<std::wstring, std::pair<std::wstring, std::wstring>>>;

    std::optional<std::wstring> ReadString(Hive hive, const std::wstring& key, const std::wstring& name) override {
        const auto& values = keys_[{hive, ToUpper(key)}];
        const auto found = values.find(ToUpper(name));
        const bool isThere = !faults_.Fails("Registry.ReadString") && found != values.end();
        return isThere ? std::optional(found->second.second) : std::nullopt;
    }
    void WriteString(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value) override {
        faults_.Check("Registry.WriteString", key);
        Put(hive, key, name, value);
    }
    void RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) override {
        faults_.Check("Registry.RemoveValue", key);
        keys_[{hive, ToUpper(key)}].erase(ToUpper(name));
    }
    void RemoveKey(Hive hive, const std::wstring& key) override {
        faults_.Check("Registry.RemoveKey", key);
        for (const auto& [other, values] : keys_) {
            if (other.first == hive && other.second.starts_with(ToUpper(key) + L"\\") && !values.empty()) {
                throw PlatformError("RemoveKey", key, errors::AccessDenied);
            }
        }
        keys_.erase({hive, ToUpper(key)});
    }
    std::vector<std::pair<std::wstring, std::wstring>> ListValues(Hive hive, const std::wstring& key) override {
        std::vector<std::pair<std::wstring, std::wstring>> listed;
        if (!faults_.Fails("Registry.ListValues")) {
            for (const auto& [folded, value] : keys_[{hive, ToUpper(key)}]) {
                listed.push_back(value);
            }
        }
        return listed;
    }

    /// For setting up: not counted as a call.
    void Put(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value) {
        auto& entry = keys_[{hive, ToUpper(key)}].try_emplace(ToUpper(name), name, L"").first->second;
        entry.second = value;
    }
    const Keys& All() const { return keys_; }

  private:
    Keys keys_;
};

}  // namespace mip
