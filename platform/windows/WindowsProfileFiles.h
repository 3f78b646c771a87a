#pragma once

#include "platform/ProfileFiles.h"

namespace mip {

class WindowsProfileFiles : public ProfileFiles {
  public:
    std::wstring ReadString(const std::wstring& section, const std::wstring& key, const std::wstring& file,
                            std::size_t capacity) override;
    std::vector<std::wstring> ReadStrings(const std::wstring& section, const std::vector<std::wstring>& keys,
                                          const std::wstring& file, std::size_t capacity) override;
};

}  // namespace mip
