#pragma once

#include "platform/Files.h"

namespace mip {

class WindowsVolumes : public Volumes {
  public:
    std::wstring DriveName(const std::wstring& path) override;
    double FreeBytes(const std::wstring& root) override;
    std::wstring FileSystemName(const std::wstring& root) override;
    bool IsOneVolume(const std::wstring& one, const std::wstring& other) override;
    void Flush(const std::wstring& folder) override;
};

}  // namespace mip
