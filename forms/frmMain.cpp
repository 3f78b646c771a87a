#include "forms/frmMain.h"

#include <algorithm>

#include "app/Messages.h"
#include "app/modSysParameter.h"

namespace mip {

namespace {

constexpr UINT_PTR Timer1 = 1;
constexpr UINT_PTR Timer2 = 2;
constexpr int BarSteps = 1000;

/// The control of a step's caption; these are numbered from 2.
constexpr int CaptionOf(Step step) {
    return ids::L_STEP + 1 + static_cast<int>(step);
}

constexpr TextStyle StepLook(StepState state) {
    return {.Points = 11, .Bold = state == StepState::Running, .Background = &Palette::Card};
}

constexpr COLORREF FrameColour(StepState state) {
    return state == StepState::Waiting ? 0xFF0000 : state == StepState::Running ? 0x0000FF : 0x404040;
}

}  // namespace

void frmMain::OnLoad() {
    AddHeader(ids::lblTitle, L"", 14, true, 64);
    for (const Step step : AllSteps) {
        AddLabel(CaptionOf(step), L"", StepLook(StepState::Waiting), SS_ENDELLIPSIS);
    }
    constexpr TextStyle muted{.Colour = &Palette::Muted, .Background = &Palette::Card};
    AddLabel(ids::L_Manual, L"", muted, SS_ENDELLIPSIS);
    AddLabel(ids::L_Position, L"", muted, SS_RIGHT | SS_ENDELLIPSIS);
    for (const Bar bar : {Bar::SevenZip, Bar::Copy, Bar::Pdf}) {
        const HWND control = AddControl(PROGRESS_CLASSW, ids::pgBar + static_cast<int>(bar), L"", PBS_SMOOTH);
        SendMessageW(control, PBM_SETRANGE32, 0, BarSteps);
    }
    driver_.FormLoad();
    DisableClosing();
    Finish(600);
    SetTimer(Window(), Timer1, 1000, nullptr);
    SetTimer(Window(), Timer2, 200, nullptr);
}

void frmMain::OnShown() {
    Redraw(true);
    driver_.RunInstallation();
    KillTimer(Window(), Timer1);
    KillTimer(Window(), Timer2);
    Flow().ShowResult();
    Close();
}

int frmMain::Arrange(int left, int top, int width) {
    const int height = Px(60);
    const int textLeft = left + Px(72);
    const int textWidth = width - Px(72 + 20);
    for (const Step step : AllSteps) {
        const bool hasBar = step == Step::Manuals;
        Frame(step).Area = Area(left, top, width, height + (hasBar ? Px(56) : 0));
        const HWND caption = Item(CaptionOf(step));
        const int lineHeight = static_cast<int>(TextSize(caption).cy);
        Place(caption, textLeft, top + (height - lineHeight) / 2, textWidth, lineHeight);
        top = Frame(step).Area.bottom + Px(10);
    }

    const int manualTop = Frame(Step::Manuals).Area.top + height - Px(6);
    const int positionWidth = Px(140);
    Place(Item(ids::L_Manual), textLeft, manualTop, textWidth - positionWidth - Px(12), Px(18));
    Place(Item(ids::L_Position), textLeft + textWidth - positionWidth, manualTop, positionWidth, Px(18));
    for (const Bar bar : {Bar::SevenZip, Bar::Copy, Bar::Pdf}) {
        Place(Item(ids::pgBar + static_cast<int>(bar)), textLeft, manualTop + Px(24), textWidth, Px(16));
    }
    return Frame(Step::Manuals).Area.bottom;
}

void frmMain::Paint(HDC dc, const Palette& colours) {
    for (const Step step : AllSteps) {
        DrawStep(dc, colours, step);
    }
}

/// A card with the step's frame at its left and a disc in the same colour: the step's number, or a tick when done.
void frmMain::DrawStep(HDC dc, const Palette& colours, Step step) {
    const StepFrame& frame = Frame(step);
    const COLORREF colour = FrameColour(frame.State);
    FillRounded(dc, frame.Area, Px(4), colours.Card, colours.Line);
    RECT bar = Area(frame.Area.left, frame.Area.top, Px(6), frame.Area.bottom - frame.Area.top);
    RECT disc = Area(frame.Area.left + Px(22), frame.Area.top + (Px(60) - Px(32)) / 2, Px(32), Px(32));
    if (colours.HighContrast) {
        // The steps' colours may be dark on dark.
        FillArea(dc, bar, colours.Text);
        FillCircle(dc, disc, colours.Text);
        bar = Shrunk(bar, Px(1));
        disc = Shrunk(disc, Px(1));
    }
    FillArea(dc, bar, colour);
    FillCircle(dc, disc, colour);
    if (frame.State == StepState::Done) {
        DrawGlyph(dc, Shrunk(disc, Px(4)), Glyph::Check, RGB(255, 255, 255));
        return;
    }
    const std::wstring number = std::to_wstring(static_cast<int>(step));
    RECT text = disc;
    const SelectedObject font(dc, FontOf(11, true));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    DrawTextW(dc, number.c_str(), -1, &text, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
}

std::optional<LRESULT> frmMain::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_TIMER:
            wParam == Timer1 ? driver_.Timer1() : driver_.Timer2();
            return 0;
        case WM_ENABLE:
            ShowOnTaskbar();
            break;
        case WM_QUERYENDSESSION:
            return progress_.Writing ? FALSE : TRUE;
        default:
            break;
    }
    return Form::OnMessage(message, wParam, lParam);
}

void frmMain::SetManual(const std::wstring& name, const std::wstring& position) {
    SetItemText(ids::L_Manual, name);
    SetItemText(ids::L_Position, position);
}

void frmMain::SetProgress(const RunProgress& progress) {
    if (progress.Writing && !progress_.Writing) {
        ShutdownBlockReasonCreate(Window(), GetMessageText(Program(), messages::ShutdownReason).c_str());
    } else if (!progress.Writing && progress_.Writing) {
        ShutdownBlockReasonDestroy(Window());
    }
    progress_ = progress;
    ShowOnTaskbar();
}

/// A run that waits for an answer is paused.
void frmMain::ShowOnTaskbar() {
    constexpr float visible = 0.1F;
    const bool isAsking = IsWindowEnabled(Window()) == 0;
    const float part = progress_.Failed ? std::max(progress_.Part, visible) : progress_.Part;
    taskbar_.Show(Window(), part, progress_.Failed ? TBPF_ERROR : isAsking ? TBPF_PAUSED : TBPF_NORMAL);
}

void frmMain::SetCaption(const std::wstring& caption) {
    Form::SetCaption(caption);
    SetItemText(ids::lblTitle, caption);
}

void frmMain::SetStep(Step step, const std::wstring& caption, StepState state) {
    SetLook(Item(CaptionOf(step)), StepLook(state));
    SetItemText(CaptionOf(step), caption);
    Frame(step).State = state;
    InvalidateRect(Window(), &Frame(step).Area, FALSE);
}

void frmMain::SetBar(Bar bar, const BarState& state) {
    const HWND control = Item(ids::pgBar + static_cast<int>(bar));
    const float range = state.Max - state.Min;
    const float part = range > 0 ? std::clamp((state.Value - state.Min) / range, 0.0F, 1.0F) : 0.0F;
    SendMessageW(control, PBM_SETPOS, static_cast<WPARAM>(part * BarSteps), 0);
    const bool shown = (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != state.Visible) {
        ShowWindow(control, state.Visible ? SW_SHOW : SW_HIDE);
    }
}

void frmMain::Repaint() {
    RedrawWindow(Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace mip
