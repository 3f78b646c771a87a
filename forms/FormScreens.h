#pragma once

#include <memory>

#include "forms/Form.h"
#include "screens/Screens.h"

namespace mip {

/// The program's screens as windows.
class FormScreens final : public Screens {
  public:
    FormScreens(mip::Program& program, EndOfProgram end) : host_(program, *this, end) {}

    void ShowMenu() override;
    void ShowAgreement() override;
    void ShowInstallation() override;
    void ShowResult() override;
    void ShowClosing() override;
    void ShowMaintenance() override;
    void ShowStartPage() override;
    std::optional<std::wstring> AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) override;

    FormHost& Host() { return host_; }

  private:
    template <typename FormType>
    void Open(std::unique_ptr<Form>& form) {
        form = std::make_unique<FormType>(host_);
        form->Show();
    }

    FormHost host_;
    std::unique_ptr<Form> menu_;
    std::unique_ptr<Form> agreement_;
    std::unique_ptr<Form> installation_;
    std::unique_ptr<Form> result_;
    std::unique_ptr<Form> closing_;
    std::unique_ptr<Form> maintenance_;
};

}  // namespace mip
