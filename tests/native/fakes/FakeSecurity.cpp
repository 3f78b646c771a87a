#include "tests/native/fakes/FakeSecurity.h"

#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::uint32_t NotSupported = 50;
constexpr std::uint32_t NoneMapped = 1332;

class FakeAccessList : public AccessList {
  public:
    FakeAccessControl::List Entries;
};

const FakeAccessControl::List& EntriesOf(const AccessList& list) {
    return dynamic_cast<const FakeAccessList&>(list).Entries;
}

/// Copies a name with its NUL as the look-up does: what lies behind it in the buffer stays.
void FillBuffer(std::wstring& buffer, const std::wstring& text) {
    buffer.replace(0, text.size() + 1, text + L'\0');
}

}  // namespace

FakeAccountNames::FakeAccountNames(Faults& faults) : faults_(faults) {
    Accounts[UsersSid()] = {L"Users", L"BUILTIN"};
}

Sid FakeAccountNames::NtAuthoritySid(const std::vector<std::uint32_t>& subAuthorities) {
    Sid sid{1, static_cast<std::uint8_t>(subAuthorities.size()), 0, 0, 0, 0, 0, 5};
    for (const std::uint32_t part : subAuthorities) {
        for (int shift = 0; shift < 32; shift += 8) {
            sid.push_back(static_cast<std::uint8_t>(part >> shift));
        }
    }
    return sid;
}

Sid FakeAccountNames::SidOf(const std::wstring& name) const {
    for (const auto& [sid, account] : Accounts) {
        if (ToUpper(account.Name) == ToUpper(name)) {
            return sid;
        }
    }
    return {};
}

Sid FakeAccountNames::MakeSid(const std::vector<std::uint32_t>& subAuthorities) {
    faults_.Check("AccountNames.MakeSid", L"");
    return NtAuthoritySid(subAuthorities);
}

bool FakeAccountNames::LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                                 std::uint32_t& domainSize) {
    const auto account = Accounts.find(sid);
    if (faults_.Fails("AccountNames.LookupSid") || account == Accounts.end()) {
        nameSize = domainSize = 0;
        return false;
    }
    const auto nameLength = static_cast<std::uint32_t>(account->second.Name.size());
    const auto domainLength = static_cast<std::uint32_t>(account->second.Domain.size());
    if (name.size() <= nameLength || domain.size() <= domainLength) {
        nameSize = nameLength + 1;
        domainSize = domainLength + 1;
        return false;
    }
    FillBuffer(name, account->second.Name);
    FillBuffer(domain, account->second.Domain);
    nameSize = nameLength;
    domainSize = domainLength;
    return true;
}

void FakeAccessControl::Check(const std::string& operation, const std::wstring& object) {
    faults_.Check("AccessControl." + operation, object);
    const std::uint32_t code = FailWith ? FailWith(operation, object) : 0;
    if (code != 0) {
        throw PlatformError(operation, object, code);
    }
}

FakeDrive& FakeAccessControl::DriveOfObject(const std::string& operation, const std::wstring& path) {
    Check(operation, path);
    const FileTree::Place place = tree_.Locate(path);
    if (!place.Node) {
        throw PlatformError(operation, path, place.Code);
    }
    return *place.Drive;
}

FakeAccessControl::List& FakeAccessControl::ListOf(const std::wstring& path) {
    const std::shared_ptr<FileNode> node = tree_.Find(path);
    if (!node) {
        throw PlatformError("ListOf", path, errors::FileNotFound);
    }
    return lists_[node.get()];
}

std::unique_ptr<AccessList> FakeAccessControl::ReadList(const std::wstring& path) {
    DriveOfObject("ReadList", path);
    auto list = std::make_unique<FakeAccessList>();
    list->Entries = ListOf(path);
    return list;
}

std::unique_ptr<AccessList> FakeAccessControl::MergeEntry(const AccessList& current, const ExplicitAccess& entry) {
    Check("MergeEntry", entry.Trustee);
    const Sid account = accounts_.SidOf(CutAtNul(entry.Trustee));
    if (account.empty()) {
        throw PlatformError("MergeEntry", entry.Trustee, NoneMapped);
    }
    auto merged = std::make_unique<FakeAccessList>();
    merged->Entries = EntriesOf(current);
    std::erase_if(merged->Entries, [&](const FakeAccessEntry& other) { return other.Account == account; });
    merged->Entries.push_back({{0, entry.Permissions, account}, entry.Inheritance});
    return merged;
}

void FakeAccessControl::SetList(const std::wstring& path, const AccessList& list) {
    const FakeDrive& drive = DriveOfObject("SetList", path);
    if (drive.ReadOnly || drive.FileSystem != L"NTFS") {
        throw PlatformError("SetList", path, drive.ReadOnly ? errors::AccessDenied : NotSupported);
    }
    ListOf(path) = EntriesOf(list);
}

std::optional<std::vector<AccessEntry>> FakeAccessControl::ReadEntries(const std::wstring& path) {
    if (DriveOfObject("ReadEntries", path).FileSystem != L"NTFS") {
        return std::nullopt;
    }
    const List& list = ListOf(path);
    return std::vector<AccessEntry>(list.begin(), list.end());
}

std::wstring FakeAccessControl::MessageText(std::uint32_t code, const std::wstring& messageLibrary) {
    if (faults_.Fails("AccessControl.MessageText")) {
        return L"";
    }
    const auto library = LibraryMessages.find(messageLibrary);
    const auto& texts = library == LibraryMessages.end() ? SystemMessages : library->second;
    const auto text = texts.find(code);
    return text == texts.end() ? L"" : text->second;
}

}  // namespace mip
