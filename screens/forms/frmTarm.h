#pragma once

#include "screens/forms/Form.h"

namespace mip {

/// The closing screen: one message, one button that ends the program.
class frmTarm final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override { Flow().CloseTerms(); }
    int Arrange(int left, int top, int width) override;
};

}  // namespace mip
