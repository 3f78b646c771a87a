#pragma once

#include "forms/Form.h"

namespace mip {

/// The agreement: the terms of use, and consent or not.
class frmStartUp final : public Form {
  public:
    using Form::Form;

  protected:
    void OnLoad() override;
    void OnCommand(int control, int notification) override;
    void OnClose() override;
    int Arrange(int left, int top, int width) override;
    void Paint(HDC dc, const Palette& colours) override;

  private:
    void AddOption(int index, std::int16_t message);

    RECT frame1_{};
};

}  // namespace mip
