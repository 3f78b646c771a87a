#pragma once

#include <optional>

#include "forms/WindowsHeader.h"

#include "forms/FormHost.h"

namespace mip {

/// A dialog window. The derived class makes its controls when it is loaded; the window goes with the object.
class Dialog {
  public:
    explicit Dialog(FormHost& host) : host_(host) {}
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    virtual ~Dialog();

    /// Shows the dialog on its own and returns.
    void Show();
    /// Shows the dialog over its owner and returns when it is closed.
    void RunModal(HWND owner);
    HWND Window() const { return window_; }

  protected:
    virtual void OnLoad() = 0;
    /// The window is on the screen for the first time.
    virtual void OnShown() {}
    virtual void OnCommand(int /*control*/, int /*notification*/) {}
    /// The title bar's close button, Alt+F4, or Esc where there is no Cancel.
    virtual void OnClose() {}
    /// Every other message and its result; nothing leaves it to the system.
    virtual std::optional<LRESULT> OnMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) { return {}; }

    void Close();
    mip::Program& Program() const { return host_.Program(); }
    ScreenFlow& Flow() const { return host_.Flow(); }
    FormHost& Host() const { return host_; }
    /// Dots per inch that the window is laid out for.
    int Dpi() const { return dpi_; }
    void SetDpi(int dpi) { dpi_ = dpi; }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void BeginOnLastScreen();
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

    FormHost& host_;
    HWND window_ = nullptr;
    int dpi_ = 96;
    bool modal_ = false;
};

}  // namespace mip
