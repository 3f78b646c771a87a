#pragma once

#include "forms/WindowsHeader.h"

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

/// A client area that is drawn in memory and shown at once.
class BufferedPaint {
  public:
    explicit BufferedPaint(HWND window);
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;
    ~BufferedPaint();

    HDC Dc() const { return memory_; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC memory_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
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
