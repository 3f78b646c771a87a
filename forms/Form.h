#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "forms/Dialog.h"
#include "forms/Drawing.h"
#include "forms/Fonts.h"
#include "forms/WholeTextTip.h"

namespace mip {

/// How a control's text looks.
struct TextStyle {
    int Points = 9;
    bool Bold = false;
    COLORREF Palette::*Colour = &Palette::Text;
    COLORREF Palette::*Background = &Palette::Page;
};

/// The program's kind of window: a header with the product's sign and title, the content, a footer with buttons. Sizes
/// are given in units of 1/96 inch and follow the screen's resolution; heights follow the texts.
class Form : public Dialog {
  public:
    explicit Form(FormHost& host);

  protected:
    /// Places the content's controls below `top` and returns where the content ends, both in pixels.
    virtual int Arrange(int left, int top, int width) = 0;
    /// Draws what lies behind the content's controls.
    virtual void Paint(HDC /*dc*/, const Palette& /*colours*/) {}
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// The window's caption; it is also the title of message boxes from now on.
    void SetCaption(const std::wstring& caption);
    /// Called at the end of OnLoad: arranges all and puts the window where the last one stood, or over its owner.
    void Finish(int width);
    /// The user can make the window larger than Finish does; what has FlexibleHeight gets the height. Before Finish.
    void AllowResizing();
    /// The user cannot close the window; the default OnClose does nothing.
    void DisableClosing();
    /// True at the first call, which also disables closing: for what ends the form and must not be begun twice.
    bool BeginsToEnd();
    /// The hourglass while the form works.
    void ShowBusy(bool busy);
    /// Arranges again after texts or visible controls have changed.
    void ArrangeAgain();
    void Redraw(bool now = false);

    HWND AddControl(const wchar_t* windowClass, int id, const std::wstring& text, DWORD style, TextStyle look = {});
    /// A label that shortens its text to one line (SS_ENDELLIPSIS, SS_PATHELLIPSIS) shows all of it to the mouse.
    HWND AddLabel(int id, const std::wstring& text, TextStyle look = {}, DWORD style = 0);
    /// A button in the footer, at its right; from left to right in the order in which they are added.
    HWND AddFooterButton(int id, const std::wstring& text, bool isDefault);
    /// The one control at the footer's left.
    void SetFooterControl(HWND control) { footerControl_ = control; }
    /// Title and, where the form wants it, the size of the header band, which grows with a title of several lines.
    HWND AddHeader(int id, const std::wstring& title, int points, bool bold, int height);

    /// Height in pixels of a part that has some to spare: less than `preferred` on a screen that is too low for it,
    /// more in a window that the user has made higher.
    int FlexibleHeight(int preferred, int least) const { return std::max(Px(least), Px(preferred) - shortage_); }

    int Px(int units) const { return MulDiv(units, Dpi(), 96); }
    HWND Item(int id) const { return GetDlgItem(Window(), id); }
    void SetItemText(int id, const std::wstring& text) { SetDlgItemTextW(Window(), id, text.c_str()); }
    void ShowItem(int id, bool visible) { ShowWindow(Item(id), visible ? SW_SHOW : SW_HIDE); }
    void SetLook(HWND control, TextStyle look);
    HFONT FontOf(int points, bool bold) const { return fonts_.Get(points, bold, Dpi()); }

    /// Size of a control's text on one line, and its height when it is broken into lines of this width.
    SIZE TextSize(HWND control) const;
    int TextHeight(HWND control, int width) const;
    static void Place(HWND control, int left, int top, int width, int height);
    /// Places a label that breaks its text into lines; returns its bottom.
    int PlaceText(HWND label, int left, int top, int width) const;
    /// Width that a push button needs for its text.
    int ButtonWidth(HWND button) const;

  private:
    void ArrangeAll();
    void FollowSize(int width, int height);
    int ArrangeContent();
    int ScreenHeight() const;
    void SetClientSize(int width, int height);
    void RememberPlace();
    void PlaceHeader();
    int PlaceFooter(int top);
    void PaintAll();
    LRESULT ColourOf(HWND control, HDC dc) const;
    void ApplyFonts();
    void FollowDpi(int dpi, const RECT& suggested);

    mutable Fonts fonts_;
    std::map<HWND, TextStyle> controls_;
    std::vector<HWND> footerButtons_;
    HWND footerControl_ = nullptr;
    HWND title_ = nullptr;
    WholeTextTip tip_;
    int headerHeight_ = 0;  ///< in units, at the least
    int headerBottom_ = 0;
    int width_ = 0;
    int clientWidth_ = 0;
    int footerTop_ = 0;
    int shortage_ = 0;
    SIZE smallest_{};
    bool isResizable_ = false;
    bool isPlaced_ = false;
    bool isEnding_ = false;
    bool isBusy_ = false;
};

}  // namespace mip
