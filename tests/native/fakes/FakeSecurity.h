#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Security.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"

namespace mip {

/// Knows the accounts that the test adds; S-1-5-32-545 is "Users" of "BUILTIN" at the start.
class FakeAccountNames : public AccountNames {
  public:
    explicit FakeAccountNames(Faults& faults);

    Sid MakeSid(const std::vector<std::uint32_t>& subAuthorities) override;
    bool LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                   std::uint32_t& domainSize) override;

    struct Account {
        std::wstring Name;
        std::wstring Domain;
    };
    std::map<Sid, Account> Accounts;

    static Sid NtAuthoritySid(const std::vector<std::uint32_t>& subAuthorities);
    static Sid UsersSid() { return NtAuthoritySid({32, 545}); }
    /// The SID of an account by its name; an empty one when no account has it.
    Sid SidOf(const std::wstring& name) const;

  private:
    Faults& faults_;
};

/// An access-control entry with what the fake keeps besides.
struct FakeAccessEntry : AccessEntry {
    std::uint32_t Inheritance = 0;
};

/// Access control of the tree's objects. An object without a list of its own has an empty one on NTFS and none on
/// other file systems.
class FakeAccessControl : public AccessControl {
  public:
    using List = std::vector<FakeAccessEntry>;

    FakeAccessControl(FileTree& tree, FakeAccountNames& accounts, Faults& faults)
        : tree_(tree), accounts_(accounts), faults_(faults) {}

    std::unique_ptr<AccessList> ReadList(const std::wstring& path) override;
    std::unique_ptr<AccessList> MergeEntry(const AccessList& current, const ExplicitAccess& entry) override;
    void SetList(const std::wstring& path, const AccessList& list) override;
    std::optional<std::vector<AccessEntry>> ReadEntries(const std::wstring& path) override;
    std::wstring MessageText(std::uint32_t code, const std::wstring& messageLibrary) override;

    /// The list of an object, for setting up and checking.
    List& ListOf(const std::wstring& path);
    /// Called with "ReadList", "MergeEntry", "SetList" or "ReadEntries" and the path (the trustee for MergeEntry); a
    /// value other than 0 makes the operation throw it.
    std::function<std::uint32_t(const std::string& operation, const std::wstring& object)> FailWith;
    /// Texts of the system, and by library path those of message libraries.
    std::map<std::uint32_t, std::wstring> SystemMessages;
    std::map<std::wstring, std::map<std::uint32_t, std::wstring>> LibraryMessages;

  private:
    void Check(const std::string& operation, const std::wstring& object);
    FakeDrive& DriveOfObject(const std::string& operation, const std::wstring& path);

    FileTree& tree_;
    FakeAccountNames& accounts_;
    Faults& faults_;
    std::map<const FileNode*, List> lists_;
};

}  // namespace mip
