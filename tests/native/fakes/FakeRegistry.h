#pragma once

#include <map>

#include "platform/Registry.h"
#include "tests/native/fakes/Faults.h"

namespace mip {

/// Values are listed in the order in which they were first written.
class FakeRegistry : public Registry {
  public:
    explicit FakeRegistry(Faults& faults) : faults_(faults) {}

    std::optional<std::wstring> ReadString(Hive hive, const std::wstring& key, const std::wstring& name) override;
    void WriteString(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value) override;
    void RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) override;
    void RemoveKey(Hive hive, const std::wstring& key) override;
    std::vector<std::pair<std::wstring, std::wstring>> ListValues(Hive hive, const std::wstring& key) override;

    /// For setting up and checking: not counted as calls.
    void Put(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value);
    /// A value that is not a string.
    void PutNumber(Hive hive, const std::wstring& key, const std::wstring& name);
    bool HasKey(Hive hive, const std::wstring& key) const;

  private:
    struct Entry {
        std::wstring Name;
        std::optional<std::wstring> Text;  ///< nothing: not a string
    };
    using Key = std::pair<Hive, std::wstring>;

    static Key KeyOf(Hive hive, const std::wstring& key);
    void Store(Hive hive, const std::wstring& key, Entry entry);

    Faults& faults_;
    std::map<Key, std::vector<Entry>> keys_;
};

}  // namespace mip
