#include "tests/native/fakes/FakeRegistry.h"

#include <algorithm>

#include "text/TextTools.h"

namespace mip {

namespace {

auto Named(const std::wstring& name) {
    return [folded = ToUpper(name)](const auto& entry) { return ToUpper(entry.Name) == folded; };
}

}  // namespace

FakeRegistry::Key FakeRegistry::KeyOf(Hive hive, const std::wstring& key) {
    return {hive, ToUpper(key)};
}

std::optional<std::wstring> FakeRegistry::ReadString(Hive hive, const std::wstring& key, const std::wstring& name) {
    const auto found = keys_.find(KeyOf(hive, key));
    if (faults_.Fails("Registry.ReadString") || found == keys_.end()) {
        return std::nullopt;
    }
    const auto entry = std::find_if(found->second.begin(), found->second.end(), Named(name));
    return entry == found->second.end() ? std::nullopt : entry->Text;
}

void FakeRegistry::WriteString(Hive hive, const std::wstring& key, const std::wstring& name,
                               const std::wstring& value) {
    faults_.Check("Registry.WriteString", key);
    Put(hive, key, name, value);
}

void FakeRegistry::RemoveValue(Hive hive, const std::wstring& key, const std::wstring& name) {
    faults_.Check("Registry.RemoveValue", key);
    const auto found = keys_.find(KeyOf(hive, key));
    if (found != keys_.end()) {
        std::erase_if(found->second, Named(name));
    }
}

void FakeRegistry::RemoveKey(Hive hive, const std::wstring& key) {
    faults_.Check("Registry.RemoveKey", key);
    const Key removed = KeyOf(hive, key);
    const bool hasSubkeys = std::any_of(keys_.begin(), keys_.end(), [&](const auto& other) {
        return other.first.first == hive && other.first.second.starts_with(removed.second + L"\\");
    });
    if (hasSubkeys) {
        throw PlatformError("RemoveKey", key, errors::AccessDenied);
    }
    keys_.erase(removed);
}

std::vector<std::pair<std::wstring, std::wstring>> FakeRegistry::ListValues(Hive hive, const std::wstring& key) {
    std::vector<std::pair<std::wstring, std::wstring>> result;
    const auto found = keys_.find(KeyOf(hive, key));
    if (faults_.Fails("Registry.ListValues") || found == keys_.end()) {
        return result;
    }
    for (const Entry& entry : found->second) {
        if (entry.Text) {
            result.emplace_back(entry.Name, *entry.Text);
        }
    }
    return result;
}

void FakeRegistry::Put(Hive hive, const std::wstring& key, const std::wstring& name, const std::wstring& value) {
    Store(hive, key, {name, value});
}

void FakeRegistry::PutNumber(Hive hive, const std::wstring& key, const std::wstring& name) {
    Store(hive, key, {name, std::nullopt});
}

bool FakeRegistry::HasKey(Hive hive, const std::wstring& key) const {
    return keys_.contains(KeyOf(hive, key));
}

void FakeRegistry::Store(Hive hive, const std::wstring& key, Entry entry) {
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos; end = key.find(L'\\', end + 1)) {
        keys_[KeyOf(hive, key.substr(0, end))];
    }
    std::vector<Entry>& entries = keys_[KeyOf(hive, key)];
    const auto existing = std::find_if(entries.begin(), entries.end(), Named(entry.Name));
    if (existing == entries.end()) {
        entries.push_back(std::move(entry));
    } else {
        existing->Text = std::move(entry.Text);
    }
}

}  // namespace mip
