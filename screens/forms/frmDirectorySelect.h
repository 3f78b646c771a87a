#pragma once

#include "screens/DirectoryScreen.h"
#include "screens/forms/Form.h"

namespace mip {

/// Asks for the folder of the manual that is being installed.
class frmDirectorySelect final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnShown() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override { Cancel(); }
    int Arrange(int left, int top, int width) override;
    void Paint(HDC dc, const Palette& colours) override;

  private:
    void Change();
    void Cancel();
    std::wstring ShownFolder() const;

    DirectoryTexts texts_;
    RECT frame1_{};
};

/// The shell's folder browser over `owner`, with the folder `start` selected; "" when the user cancels.
std::wstring ChooseInstallFolder(HWND owner, const std::wstring& title, const std::wstring& start);

}  // namespace mip
