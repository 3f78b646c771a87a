#pragma once

#include "forms/Form.h"

namespace mip {

/// The menu: installation guide, start of the installation, the manuals on the disc.
class frmMenu final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override;
    int Arrange(int left, int top, int width) override;
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void Browse();
    void ShowBrowsing(bool browsing);
    void AddMenuButton(int id, std::int16_t message);
    void DrawMenuButton(const NMCUSTOMDRAW& draw) const;

    bool browsing_ = false;
    bool stopped_ = false;  ///< the user does not wait for the browser any longer
};

}  // namespace mip
