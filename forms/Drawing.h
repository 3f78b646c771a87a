#pragma once

#include "forms/WindowsHeader.h"

#include "platform/windows/Handle.h"

namespace mip {

/// The colours of the program's windows; the system's own when the user works with high contrast.
struct Palette {
    COLORREF Page;
    COLORREF Text;
    COLORREF Muted;
    COLORREF Header;
    COLORREF HeaderText;
    COLORREF Footer;
    COLORREF Line;
    COLORREF Card;
    COLORREF CardHot;
    COLORREF Accent;
    COLORREF Success;
    COLORREF SuccessTint;
    COLORREF Failure;
    COLORREF FailureTint;
    COLORREF Highlight;
    COLORREF HighlightText;
    COLORREF OddRow;
    bool HighContrast;
};
Palette Colours();

/// Pens, brushes, fonts and bitmaps.
struct GdiObjectTraits {
    using Value = HGDIOBJ;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { DeleteObject(value); }
};
using GdiObject = Handle<GdiObjectTraits>;

struct MemoryDcTraits {
    using Value = HDC;
    static Value Invalid() noexcept { return nullptr; }
    static void Close(Value value) noexcept { DeleteDC(value); }
};
using MemoryDc = Handle<MemoryDcTraits>;

/// The device context of a window's client area, or of the screen for no window.
class WindowDc {
  public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    ~WindowDc() { ReleaseDC(window_, dc_); }

    HDC Get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

/// A device context uses an object for as long as this lives.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() { SelectObject(dc_, previous_); }

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

/// A client area that is drawn in memory and shown at once.
class BufferedPaint {
  public:
    explicit BufferedPaint(HWND window);
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;
    ~BufferedPaint();

    HDC Dc() const { return memory_.Get(); }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
    MemoryDc memory_;
    GdiObject bitmap_;
    SelectedObject selected_;
};

enum class Glyph { Check, Exclamation, Guide, Install, Browse };

void FillArea(HDC dc, const RECT& area, COLORREF colour);
/// The shapes below have smooth edges.
void FillRounded(HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border);
void FillCircle(HDC dc, const RECT& area, COLORREF colour);
/// Strokes a glyph that fills the area, a square.
void DrawGlyph(HDC dc, const RECT& area, Glyph glyph, COLORREF colour);

RECT Area(int left, int top, int width, int height);
RECT Shrunk(const RECT& area, int by);

}  // namespace mip
