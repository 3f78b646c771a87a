#include "forms/Form.h"

#include <algorithm>
#include <utility>

#include "app/modLanguage.h"
#include "forms/Placement.h"
#include "forms/TaskbarButton.h"
#include "forms/resource.h"

namespace mip {

namespace {

constexpr int Margin = 24;
constexpr int FooterMargin = 14;
constexpr int ButtonHeight = 28;
constexpr int SignSize = 32;

/// Whether "&" marks a letter in the control's text, for DrawText.
UINT PrefixOf(HWND control) {
    return (GetWindowLongW(control, GWL_STYLE) & SS_NOPREFIX) == 0 ? 0U : DT_NOPREFIX;
}

}  // namespace

Form::Form(FormHost& host) : Dialog(host), fonts_(ScreenFont(host.Program().Identity.LanguageCode)) {}

void Form::SetCaption(const std::wstring& caption) {
    SetWindowTextW(Window(), caption.c_str());
    Program().WindowTitle = caption;
}

void Form::Finish(int width) {
    width_ = width;
    const auto icon = [](int size) {
        return reinterpret_cast<LPARAM>(
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_PROGRAM), IMAGE_ICON, size, size, LR_SHARED));
    };
    SendMessageW(Window(), WM_SETICON, ICON_BIG, icon(GetSystemMetrics(SM_CXICON)));
    SendMessageW(Window(), WM_SETICON, ICON_SMALL, icon(GetSystemMetrics(SM_CXSMICON)));
    ArrangeAll();

    PutInPlace(Window(), Host().LastPlace());
    isPlaced_ = true;
    RememberPlace();
}

/// The next screen opens where this one stands.
void Form::RememberPlace() {
    if (const auto place = isPlaced_ ? PlaceOf(Window()) : std::nullopt) {
        Host().RememberPlace(*place);
    }
}

void Form::AllowResizing() {
    isResizable_ = true;
    SetWindowLongW(Window(), GWL_STYLE, GetWindowLongW(Window(), GWL_STYLE) | WS_THICKFRAME | WS_MAXIMIZEBOX);
    SetWindowPos(Window(), nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form::DisableClosing() {
    EnableMenuItem(GetSystemMenu(Window(), FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);
}

bool Form::BeginsToEnd() {
    DisableClosing();
    return !std::exchange(isEnding_, true);
}

void Form::ShowBusy(bool busy) {
    isBusy_ = busy;
    SetCursor(LoadCursorW(nullptr, busy ? IDC_WAIT : IDC_ARROW));
}

void Form::ArrangeAgain() {
    if (isResizable_) {
        RECT client{};
        GetClientRect(Window(), &client);
        FollowSize(client.right, client.bottom);
    } else {
        ArrangeAll();
    }
    Redraw();
}

void Form::Redraw(bool now) {
    RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | (now ? RDW_UPDATENOW : 0U));
}

HWND Form::AddControl(const wchar_t* windowClass, int id, const std::wstring& text, DWORD style, TextStyle look) {
    const HWND control =
        CreateWindowExW(0, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, Window(),
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SetLook(control, look);
    return control;
}

HWND Form::AddLabel(int id, const std::wstring& text, TextStyle look, DWORD style) {
    const bool canBeCut = (style & SS_ELLIPSISMASK) != 0;
    const HWND label = AddControl(L"STATIC", id, text, SS_NOPREFIX | style | (canBeCut ? SS_NOTIFY : 0U), look);
    if (canBeCut) {
        tip_.Watch(Window(), label);
    }
    return label;
}

HWND Form::AddFooterButton(int id, const std::wstring& text, bool isDefault) {
    // The arrow keys do not lead here from the content's last group.
    const DWORD group = footerButtons_.empty() ? WS_GROUP : 0U;
    const DWORD kind = isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    const HWND button = AddControl(L"BUTTON", id, text, WS_TABSTOP | group | kind, {.Background = &Palette::Footer});
    footerButtons_.push_back(button);
    return button;
}

HWND Form::AddHeader(int id, const std::wstring& title, int points, bool bold, int height) {
    headerHeight_ = height;
    title_ = AddLabel(id, title,
                      {.Points = points, .Bold = bold, .Colour = &Palette::HeaderText, .Background = &Palette::Header});
    return title_;
}

void Form::SetLook(HWND control, TextStyle look) {
    controls_[control] = look;
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(FontOf(look.Points, look.Bold)), TRUE);
}

SIZE Form::TextSize(HWND control) const {
    return SizeOfText(control, 0, DT_SINGLELINE | PrefixOf(control));
}

int Form::TextHeight(HWND control, int width) const {
    const bool breaksAnywhere = (GetWindowLongW(control, GWL_STYLE) & SS_EDITCONTROL) != 0;
    const UINT format = DT_WORDBREAK | PrefixOf(control) | (breaksAnywhere ? DT_EDITCONTROL : 0U);
    return static_cast<int>(SizeOfText(control, width, format).cy);
}

void Form::Place(HWND control, int left, int top, int width, int height) {
    SetWindowPos(control, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

int Form::PlaceText(HWND label, int left, int top, int width) const {
    const int height = TextHeight(label, width);
    Place(label, left, top, width, height);
    return top + height;
}

int Form::ButtonWidth(HWND button) const {
    return std::max(Px(92), static_cast<int>(TextSize(button).cx) + Px(28));
}

std::optional<LRESULT> Form::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    constexpr UINT DpiChanged = 0x02E0;
    switch (message) {
        case WM_ERASEBKGND:
            return TRUE;
        case WM_PAINT:
            PaintAll();
            return 0;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            return ColourOf(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam));
        case WM_SETCURSOR:
            if (!isBusy_) {
                return {};
            }
            SetCursor(LoadCursorW(nullptr, IDC_WAIT));
            return TRUE;
        case WM_SIZE:
            if (isResizable_ && wParam != SIZE_MINIMIZED) {
                FollowSize(LOWORD(lParam), HIWORD(lParam));
                Redraw();
            }
            return {};
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest_.cx, smallest_.cy};
            return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(lParam)->code == TTN_GETDISPINFOW) {
                tip_.Tell(*reinterpret_cast<NMTTDISPINFOW*>(lParam));
            }
            return {};
        case WM_ENABLE:
            // A question or a box lies over the form.
            if (wParam == FALSE) {
                TaskbarButton::CallUser(Window());
            }
            return {};
        case WM_MOVE:
            RememberPlace();
            return {};
        case WM_SYSCOLORCHANGE:
        case WM_SETTINGCHANGE:
            Redraw();
            return {};
        case DpiChanged:
            FollowDpi(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
            return 0;
        default:
            return {};
    }
}

void Form::ArrangeAll() {
    clientWidth_ = Px(width_);
    PlaceHeader();
    shortage_ = 0;
    const int wanted = ArrangeContent();
    const int available = ScreenHeight();
    if (wanted > available) {
        shortage_ = wanted - available;
        SetClientSize(Px(width_), ArrangeContent());
    } else {
        SetClientSize(Px(width_), wanted);
    }
}

/// The parts with a flexible height get what the content lacks to the new height.
void Form::FollowSize(int width, int height) {
    clientWidth_ = width;
    PlaceHeader();
    shortage_ += ArrangeContent() - height;
    ArrangeContent();
}

/// Returns the height of the client area.
int Form::ArrangeContent() {
    const int margin = Px(Margin);
    const int contentBottom = Arrange(margin, headerBottom_ + margin, clientWidth_ - 2 * margin);
    footerTop_ = contentBottom + margin;
    return PlaceFooter(footerTop_);
}

/// The height that a client area can have on the screen that the window is on.
int Form::ScreenHeight() const {
    RECT window{};
    RECT client{};
    GetWindowRect(Window(), &window);
    GetClientRect(Window(), &client);
    const RECT work = WorkAreaOf(Window());
    return static_cast<int>(work.bottom - work.top - (window.bottom - window.top - client.bottom));
}

/// The frame around the client area keeps its size, whatever the screen's resolution makes it.
void Form::SetClientSize(int width, int height) {
    RECT window{};
    RECT client{};
    GetWindowRect(Window(), &window);
    GetClientRect(Window(), &client);
    smallest_ = {width + (window.right - window.left) - client.right,
                 height + (window.bottom - window.top) - client.bottom};
    SetWindowPos(Window(), nullptr, 0, 0, smallest_.cx, smallest_.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form::PlaceHeader() {
    if (title_ == nullptr) {
        return;
    }
    const int left = Px(Margin + SignSize + 16);
    const int width = clientWidth_ - left - Px(Margin);
    const int height = TextHeight(title_, width);
    headerBottom_ = std::max(Px(headerHeight_), height + Px(Margin));
    Place(title_, left, (headerBottom_ - height) / 2, width, height);
}

/// Returns the bottom of the window.
int Form::PlaceFooter(int top) {
    if (footerButtons_.empty()) {
        return top;
    }
    const int height = Px(ButtonHeight);
    int right = clientWidth_ - Px(Margin);
    for (auto button = footerButtons_.rbegin(); button != footerButtons_.rend(); ++button) {
        const int width = ButtonWidth(*button);
        Place(*button, right - width, top + Px(FooterMargin), width, height);
        right -= width + Px(8);
    }
    if (footerControl_ != nullptr) {
        Place(footerControl_, Px(Margin), top + Px(FooterMargin), right - Px(Margin + 8), height);
    }
    return top + height + 2 * Px(FooterMargin);
}

void Form::PaintAll() {
    const BufferedPaint paint(Window());
    const Palette colours = Colours();
    const HDC dc = paint.Dc();
    RECT client{};
    GetClientRect(Window(), &client);
    FillArea(dc, client, colours.Page);

    FillArea(dc, Area(0, 0, client.right, headerBottom_), colours.Header);
    if (colours.HighContrast) {
        FillArea(dc, Area(0, headerBottom_ - 1, client.right, 1), colours.Line);
    }
    const int sign = Px(SignSize);
    const auto icon = static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_PROGRAM), IMAGE_ICON, sign, sign, LR_DEFAULTCOLOR));
    DrawIconEx(dc, Px(Margin), (headerBottom_ - sign) / 2, icon, sign, sign, 0, nullptr, DI_NORMAL);
    DestroyIcon(icon);

    if (!footerButtons_.empty()) {
        FillArea(dc, Area(0, footerTop_, client.right, client.bottom - footerTop_), colours.Footer);
        FillArea(dc, Area(0, footerTop_, client.right, 1), colours.Line);
    }
    Paint(dc, colours);
}

LRESULT Form::ColourOf(HWND control, HDC dc) const {
    const auto found = controls_.find(control);
    const TextStyle look = found == controls_.end() ? TextStyle{} : found->second;
    const Palette colours = Colours();
    SetTextColor(dc, colours.*look.Colour);
    SetBkColor(dc, colours.*look.Background);
    SetDCBrushColor(dc, colours.*look.Background);
    return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
}

void Form::ApplyFonts() {
    for (const auto& [control, look] : controls_) {
        SetLook(control, look);
    }
}

void Form::FollowDpi(int dpi, const RECT& suggested) {
    if (!isPlaced_) {
        return;
    }
    SetDpi(dpi);
    ApplyFonts();
    ArrangeAll();
    SetWindowPos(Window(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, (isResizable_ ? 0U : SWP_NOSIZE) | SWP_NOZORDER | SWP_NOACTIVATE);
    Redraw();
}

}  // namespace mip
