#pragma once

#include <memory>

#include "app/Screens.h"
#include "screens/forms/Form.h"

namespace mip {

/// The program's screens as windows. What a quiet run does not show is done without a window.
class FormScreens final : public Screens {
  public:
    explicit FormScreens(mip::Program& program) : program_(program), host_(program, *this) {}

    void ShowMenu() override;
    void ShowStartUp() override;
    void ShowInstallation() override;
    void ShowResult() override;
    void ShowTerms() override;
    void ShowTransaction() override;

    FormHost& Host() { return host_; }

  private:
    template <typename FormType>
    void Open(std::unique_ptr<Form>& form) {
        form = std::make_unique<FormType>(host_);
        form->Show();
    }

    mip::Program& program_;
    FormHost host_;
    std::unique_ptr<Form> menu_;
    std::unique_ptr<Form> startUp_;
    std::unique_ptr<Form> main_;
    std::unique_ptr<Form> result_;
    std::unique_ptr<Form> terms_;
    std::unique_ptr<Form> transaction_;
};

}  // namespace mip
