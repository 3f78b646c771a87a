#pragma once

#include "forms/Form.h"

namespace mip {

/// The closing screen: one message, one button that ends the program.
class frmTarm final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override { End(); }
    int Arrange(int left, int top, int width) override;

  private:
    void End();
};

}  // namespace mip
