#pragma once

#include "platform/Security.h"

namespace mip {

class WindowsAccountNames : public AccountNames {
  public:
    Sid MakeSid(const std::vector<std::uint32_t>& subAuthorities) override;
    bool LookupSid(const Sid& sid, std::wstring& name, std::uint32_t& nameSize, std::wstring& domain,
                   std::uint32_t& domainSize) override;
};

}  // namespace mip
