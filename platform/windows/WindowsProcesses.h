#pragma once

#include "platform/Processes.h"

namespace mip {

class WindowsProcesses : public Processes {
  public:
    std::optional<std::vector<std::wstring>> Snapshot() override;
    std::unique_ptr<RunningProcess> StartHidden(const std::wstring& commandLine) override;
    void StartVisible(const std::wstring& commandLine) override;
};

}  // namespace mip
