#pragma once

#include <string>

#include "platform/Computer.h"
#include "platform/windows/Handle.h"

namespace mip {

/// A window property by which another instance finds this program's screens.
inline constexpr wchar_t ScreenMark[] = L"ManualInstall.Screen";

class WindowsComputer : public Computer {
  public:
    /// `instanceName` tells this program's instances from other programs. The object marks this process as an instance
    /// for as long as it lives, so the entry point makes it first.
    explicit WindowsComputer(const std::wstring& instanceName);

    std::wstring ProgramFolder() override;
    std::wstring UserName() override;
    std::wstring LanguageIdentifier() override;
    bool IsPreviousInstanceRunning() override { return previousInstance_; }
    void ShowPreviousInstance() override;
    void StayAwake(bool awake) noexcept override;
    std::string ToSystemCodePage(const std::wstring& text) override;
    std::wstring FromSystemCodePage(const std::string& bytes) override;
    [[noreturn]] void EndProcess(std::uint32_t exitCode) override;

  private:
    bool previousInstance_ = false;
    KernelHandle instanceMark_;
};

}  // namespace mip
