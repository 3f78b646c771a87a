#pragma once

#include <optional>
#include <string>
#include <utility>

#include "forms/Form.h"
#include "screens/DirectoryScreen.h"

namespace mip {

/// Asks for the folder of a manual that is being installed.
class frmDirectorySelect final : public Form {
  public:
    frmDirectorySelect(FormHost& host, const DiscCatalogueRecord& manual, std::wstring proposal)
        : Form(host), manual_(manual), proposal_(std::move(proposal)) {}

    /// The folder that was confirmed; nothing after Cancel.
    const std::optional<std::wstring>& Chosen() const { return chosen_; }

  protected:
    void OnLoad() override;
    void OnShown() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override { Cancel(); }
    int Arrange(int left, int top, int width) override;
    void Paint(HDC dc, const Palette& colours) override;

  private:
    void PlaceFolder(int left, int width);
    void Change();
    void Confirm();
    void Cancel();
    std::wstring ShownFolder() const;

    const DiscCatalogueRecord& manual_;
    const std::wstring proposal_;
    std::optional<std::wstring> chosen_;
    DirectoryTexts texts_;
    RECT frame1_{};
};

/// The shell's folder browser over `owner`, with the folder `start` selected; "" when the user cancels.
std::wstring ChooseInstallFolder(HWND owner, const std::wstring& title, const std::wstring& start);

}  // namespace mip
