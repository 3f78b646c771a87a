#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Security.h"
#include "tests/native/fakes/Faults.h"
#include "tests/native/fakes/FileTree.h"
#include "text/TextTools.h"

namespace mip {

/// Knows the accounts that the test adds; S-1-5-32-545 is "Users" of "BUILTIN" at the start.
class FakeAccountNames : public AccountNames, private Counted {
  public:
    explicit FakeAccountNames(Faults& faults) : Counted(faults) { Accounts[UsersSid()] = {L"Users", L"BUILTIN"}; }

    Sid MakeSid(const std::vector<std::uint32_t>& subAuthorities) override {
        faults_.Check("AccountNames.MakeSid", L"");
        return NtAuthoritySid(subAuthorities);
    }
    bool LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                   std::uint32_t& domainSize) override {
        const auto account = Accounts.find(sid);
        const bool isBeyond = nameSize > name.size() || domainSize > domain.size();
        nameSize = domainSize = 0;
        if (Throws || isBeyond) {
            throw PlatformError("LookupSid", L"", errors::AccessDenied);
        }
        if (faults_.Fails("AccountNames.LookupSid") || account == Accounts.end()) {
            return false;
        }
        nameSize = static_cast<std::uint32_t>(account->second.Name.size());
        domainSize = static_cast<std::uint32_t>(account->second.Domain.size());
        if (name.size() <= nameSize || domain.size() <= domainSize) {
            ++nameSize;
            ++domainSize;
            return false;
        }
        // The NUL is written too; what lies behind it in the buffer stays.
        name.replace(0, nameSize + 1, account->second.Name + L'\0');
        domain.replace(0, domainSize + 1, account->second.Domain + L'\0');
        return true;
    }

    struct Account {
        std::wstring Name;
        std::wstring Domain;
    };
    std::map<Sid, Account> Accounts;
    bool Throws = false;  ///< a look-up does

    static Sid NtAuthoritySid(const std::vector<std::uint32_t>& subAuthorities) {
        Sid sid{1, static_cast<std::uint8_t>(subAuthorities.size()), 0, 0, 0, 0, 0, 5};
        for (const std::uint32_t part : subAuthorities) {
            for (int shift = 0; shift < 32; shift += 8) {
                sid.push_back(static_cast<std::uint8_t>(part >> shift));
            }
        }
        return sid;
    }
    static Sid UsersSid() { return NtAuthoritySid({32, 545}); }
};

/// An access-control entry with what the fake keeps besides.
struct FakeAccessEntry : AccessEntry {
    std::uint32_t Inheritance = 0;
};

/// Access control of the tree's objects. An object without a list of its own has an empty one on NTFS and none on
/// other file systems.
class FakeAccessControl : public AccessControl, private OnTree {
  public:
    using List = std::vector<FakeAccessEntry>;

    FakeAccessControl(FileTree& tree, FakeAccountNames& accounts, Faults& faults)
        : OnTree(tree, faults), accounts_(accounts) {}

    std::unique_ptr<AccessList> ReadList(const std::wstring& path) override {
        CheckedDrive("ReadList", path);
        return std::make_unique<HeldList>(ListOf(path));
    }
    std::unique_ptr<AccessList> MergeEntry(const AccessList& current, const ExplicitAccess& entry) override {
        constexpr std::uint32_t NoneMapped = 1332;
        Check("MergeEntry", entry.Trustee);
        const auto account = std::ranges::find_if(accounts_.Accounts, [&](const auto& known) {
            return ToUpper(known.second.Name) == ToUpper(CutAtNul(entry.Trustee));
        });
        if (account == accounts_.Accounts.end() || entry.AccessMode != ExplicitAccess().AccessMode) {
            throw PlatformError("MergeEntry", entry.Trustee, NoneMapped);
        }
        List merged = dynamic_cast<const HeldList&>(current).Entries;
        std::erase_if(merged, [&](const FakeAccessEntry& other) { return other.Account == account->first; });
        merged.push_back({{0, entry.Permissions, account->first}, entry.Inheritance});
        return std::make_unique<HeldList>(merged);
    }
    void SetList(const std::wstring& path, const AccessList& list) override {
        constexpr std::uint32_t NotSupported = 50;
        const FakeDrive& drive = CheckedDrive("SetList", path);
        if (drive.ReadOnly || drive.FileSystem != L"NTFS") {
            throw PlatformError("SetList", path, drive.ReadOnly ? errors::AccessDenied : NotSupported);
        }
        ListOf(path) = dynamic_cast<const HeldList&>(list).Entries;
    }
    std::optional<std::vector<AccessEntry>> ReadEntries(const std::wstring& path) override {
        if (CheckedDrive("ReadEntries", path).FileSystem != L"NTFS") {
            return std::nullopt;
        }
        return std::vector<AccessEntry>(ListOf(path).begin(), ListOf(path).end());
    }
    std::wstring MessageText(std::uint32_t code, const std::wstring& messageLibrary) override {
        const auto library = LibraryMessages.find(messageLibrary);
        auto& texts = library == LibraryMessages.end() ? SystemMessages : library->second;
        return faults_.Fails("AccessControl.MessageText") ? L"" : texts[code];
    }

    /// The list of an object, for setting up and checking.
    List& ListOf(const std::wstring& path) {
        const std::shared_ptr<FileNode> node = tree_.Find(path);
        if (!node) {
            throw PlatformError("ListOf", path, errors::FileNotFound);
        }
        return lists_[node.get()];
    }
    /// Called with "ReadList", "MergeEntry", "SetList" or "ReadEntries" and the path (the trustee for MergeEntry); a
    /// value other than 0 makes the operation throw it.
    std::function<std::uint32_t(const std::string& operation, const std::wstring& object)> FailWith;
    /// Texts of the system, and by library path those of message libraries.
    std::map<std::uint32_t, std::wstring> SystemMessages;
    std::map<std::wstring, std::map<std::uint32_t, std::wstring>> LibraryMessages;

  private:
    struct HeldList : AccessList {
        explicit HeldList(List entries) : Entries(std::move(entries)) {}
        List Entries;
    };

    void Check(const std::string& operation, const std::wstring& object) {
        faults_.Check("AccessControl." + operation, object);
        if (const std::uint32_t code = FailWith ? FailWith(operation, object) : 0; code != 0) {
            throw PlatformError(operation, object, code);
        }
    }
    FakeDrive& CheckedDrive(const std::string& operation, const std::wstring& path) {
        Check(operation, path);
        const FileTree::Place place = tree_.Locate(path);
        if (!place.Node) {
            throw PlatformError(operation, path, place.Code);
        }
        return *place.Drive;
    }

    FakeAccountNames& accounts_;
    std::map<const FileNode*, List> lists_;
};

}  // namespace mip
