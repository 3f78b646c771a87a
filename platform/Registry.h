#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mip {

enum class Hive { LocalMachine, CurrentUser };

/// String values of the registry. Keys are backslash-separated paths below a hive; names compare without regard to
/// case. Absence is an empty answer, and removing what is absent is no error; other failures of the writing operations
/// throw PlatformError with a Win32 code.
class Registry {
  public:
    virtual ~Registry() = default;

    /// The value's text, or nothing when key or value is absent, not a string or not readable.
    virtual std::optional<std::wstring> ReadString(Hive hive, const std::wstring& key, const std::wstring& name) = 0;
    /// Creates the key where needed.
    virtual void WriteString(Hive hive, const std::wstring& key, const std::wstring& name,
                             const std::wstring& value) = 0;
    virtual void RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) = 0;
    /// Removes a key with its values; its subkeys must be gone.
    virtual void RemoveKey(Hive hive, const std::wstring& key) = 0;
    /// All string values of a key, in the registry's order; empty when the key is absent.
    virtual std::vector<std::pair<std::wstring, std::wstring>> ListValues(Hive hive, const std::wstring& key) = 0;
};

}  // namespace mip
