#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mip {

/// A security identifier in its binary form.
using Sid = std::vector<std::uint8_t>;

/// Account names on the local system. Results are as the system calls report them: the callers own the buffers' rules.
class AccountNames {
  public:
    virtual ~AccountNames() = default;

    /// Builds a SID of the NT authority (S-1-5-...) from its sub-authorities. Throws PlatformError.
    virtual Sid MakeSid(const std::vector<std::uint32_t>& subAuthorities) = 0;
    /// Looks up name and domain of a SID. The strings are buffers: their lengths on entry are the capacities offered,
    /// and the sizes are set to the characters written (success) or needed with the NUL (failure). False on failure.
    virtual bool LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                           std::uint32_t& domainSize) = 0;
};

/// One access-control entry as far as the program reads it.
struct AccessEntry {
    std::uint8_t Type = 0;  ///< 0 allowed, 1 denied
    std::uint32_t Mask = 0;
    Sid Account;
};

/// One explicit entry to merge into an access-control list.
struct ExplicitAccess {
    std::wstring Trustee;  ///< account name
    std::uint32_t Permissions = 0;
    std::uint32_t AccessMode = 2;   ///< SET_ACCESS
    std::uint32_t Inheritance = 0;  ///< NO_INHERITANCE, or 3: containers and objects inherit
};

/// An access-control list held in the system's form between reading, merging and setting.
class AccessList {
  public:
    virtual ~AccessList() = default;
};

/// Access control of files and folders. A failing operation throws PlatformError with the Win32 code that it got.
class AccessControl {
  public:
    virtual ~AccessControl() = default;

    /// The object's discretionary list.
    virtual std::unique_ptr<AccessList> ReadList(const std::wstring& path) = 0;
    /// A new list: the current one with the entry merged in.
    virtual std::unique_ptr<AccessList> MergeEntry(const AccessList& current, const ExplicitAccess& entry) = 0;
    virtual void SetList(const std::wstring& path, const AccessList& list) = 0;
    /// The entries of the object's discretionary list, read through the object's security descriptor; nothing when
    /// the object has no such list. An entry that cannot be read is left out.
    virtual std::optional<std::vector<AccessEntry>> ReadEntries(const std::wstring& path) = 0;
    /// The system's message for an error code (0: the thread's last error), from `messageLibrary` when that is not
    /// empty and loads, else from the system; "" when there is none.
    virtual std::wstring MessageText(std::uint32_t code, const std::wstring& messageLibrary) = 0;
};

}  // namespace mip
