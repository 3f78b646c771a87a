#pragma once

#include "forms/Form.h"

namespace mip {

/// The busy screen of a maintenance run; it closes by itself.
class frmTransaction final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnShown() override;
    int Arrange(int left, int top, int width) override;
};

}  // namespace mip
