#pragma once

#include <windows.h>

#include <utility>

#include "platform/Security.h"
#include "platform/windows/Handle.h"

namespace mip {

/// A list that lies inside a security descriptor, or stands alone; either is one block of local memory.
class WindowsAccessList : public AccessList {
  public:
    WindowsAccessList(LocalMemory<void*> memory, PACL list) : memory_(std::move(memory)), list_(list) {}

    /// Null when the object has no list.
    PACL Get() const { return list_; }

  private:
    LocalMemory<void*> memory_;
    PACL list_;
};

class WindowsAccessControl : public AccessControl {
  public:
    std::unique_ptr<AccessList> ReadList(const std::wstring& path) override;
    std::unique_ptr<AccessList> MergeEntry(const AccessList& current, const ExplicitAccess& entry) override;
    void SetList(const std::wstring& path, const AccessList& list) override;
    std::optional<std::vector<AccessEntry>> ReadEntries(const std::wstring& path) override;
    std::wstring MessageText(std::uint32_t code, const std::wstring& messageLibrary) override;
};

}  // namespace mip
