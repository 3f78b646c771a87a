#include "screens/forms/Drawing.h"

#include <algorithm>
#include <initializer_list>

#include <objidl.h>
// The system's drawing header wants these two names from the global namespace.
using std::max;
using std::min;
#include <gdiplus.h>

namespace mip {

namespace {

Palette SystemPalette() {
    const COLORREF page = GetSysColor(COLOR_WINDOW);
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
    const COLORREF highlightText = GetSysColor(COLOR_HIGHLIGHTTEXT);
    return {.Page = page,
            .Text = text,
            .Muted = text,
            .Header = page,
            .HeaderText = text,
            .Footer = page,
            .Line = text,
            .Card = page,
            .CardHot = page,
            .Accent = text,
            .Success = text,
            .SuccessTint = page,
            .Failure = text,
            .FailureTint = page,
            .Highlight = highlight,
            .HighlightText = highlightText,
            .OddRow = page,
            .HighContrast = true};
}

constexpr Palette HousePalette{.Page = RGB(255, 255, 255),
                               .Text = RGB(32, 38, 46),
                               .Muted = RGB(92, 102, 114),
                               .Header = RGB(24, 55, 92),
                               .HeaderText = RGB(255, 255, 255),
                               .Footer = RGB(243, 245, 248),
                               .Line = RGB(217, 222, 229),
                               .Card = RGB(248, 250, 252),
                               .CardHot = RGB(232, 241, 250),
                               .Accent = RGB(15, 98, 172),
                               .Success = RGB(25, 128, 56),
                               .SuccessTint = RGB(236, 247, 239),
                               .Failure = RGB(190, 30, 45),
                               .FailureTint = RGB(253, 238, 238),
                               .Highlight = RGB(204, 228, 247),
                               .HighlightText = RGB(16, 24, 32),
                               .OddRow = RGB(246, 248, 251),
                               .HighContrast = false};

bool IsHighContrastOn() {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != 0 &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

Gdiplus::Color Smooth(COLORREF colour) {
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

/// Draws on a square of 24 units that lies in the middle of the area.
class GlyphPen {
  public:
    GlyphPen(HDC dc, const RECT& area, COLORREF colour)
        : graphics_(dc),
          unit_(static_cast<float>(std::min(area.right - area.left, area.bottom - area.top)) / 24),
          left_(static_cast<float>(area.left + area.right) / 2 - 12 * unit_),
          top_(static_cast<float>(area.top + area.bottom) / 2 - 12 * unit_),
          pen_(Smooth(colour), 2 * unit_) {
        graphics_.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        pen_.SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
        pen_.SetLineJoin(Gdiplus::LineJoinRound);
    }

    void Line(std::initializer_list<Gdiplus::PointF> points) {
        Gdiplus::PointF placed[16];
        int count = 0;
        for (const Gdiplus::PointF& point : points) {
            placed[count++] = {left_ + point.X * unit_, top_ + point.Y * unit_};
        }
        graphics_.DrawLines(&pen_, placed, count);
    }

  private:
    Gdiplus::Graphics graphics_;
    float unit_;
    float left_;
    float top_;
    Gdiplus::Pen pen_;
};

void AddRoundedRectangle(Gdiplus::GraphicsPath& path, const RECT& area, int radius) {
    const int size = 2 * radius;
    const int right = area.right - size - 1;
    const int bottom = area.bottom - size - 1;
    path.AddArc(static_cast<INT>(area.left), static_cast<INT>(area.top), size, size, 180, 90);
    path.AddArc(right, static_cast<INT>(area.top), size, size, 270, 90);
    path.AddArc(right, bottom, size, size, 0, 90);
    path.AddArc(static_cast<INT>(area.left), bottom, size, size, 90, 90);
    path.CloseFigure();
}

}  // namespace

Palette Colours() {
    return IsHighContrastOn() ? SystemPalette() : HousePalette;
}

BufferedPaint::BufferedPaint(HWND window) : window_(window) {
    const HDC dc = BeginPaint(window, &paint_);
    RECT client{};
    GetClientRect(window, &client);
    memory_ = CreateCompatibleDC(dc);
    bitmap_ = CreateCompatibleBitmap(dc, std::max<int>(client.right, 1), std::max<int>(client.bottom, 1));
    previous_ = SelectObject(memory_, bitmap_);
}

BufferedPaint::~BufferedPaint() {
    const RECT& area = paint_.rcPaint;
    BitBlt(paint_.hdc, area.left, area.top, area.right - area.left, area.bottom - area.top, memory_, area.left,
           area.top, SRCCOPY);
    SelectObject(memory_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(memory_);
    EndPaint(window_, &paint_);
}

SmoothDrawing::SmoothDrawing() {
    Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token_, &input, nullptr);
}

SmoothDrawing::~SmoothDrawing() {
    Gdiplus::GdiplusShutdown(token_);
}

void FillArea(HDC dc, const RECT& area, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void FillRounded(HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border) {
    Gdiplus::Graphics graphics(dc);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    Gdiplus::GraphicsPath path;
    AddRoundedRectangle(path, area, radius);
    const Gdiplus::SolidBrush brush(Smooth(fill));
    const Gdiplus::Pen pen(Smooth(border));
    graphics.FillPath(&brush, &path);
    graphics.DrawPath(&pen, &path);
}

void FillCircle(HDC dc, const RECT& area, COLORREF colour) {
    Gdiplus::Graphics graphics(dc);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const Gdiplus::SolidBrush brush(Smooth(colour));
    graphics.FillEllipse(&brush, static_cast<INT>(area.left), static_cast<INT>(area.top),
                         static_cast<INT>(area.right - area.left - 1), static_cast<INT>(area.bottom - area.top - 1));
}

void DrawGlyph(HDC dc, const RECT& area, Glyph glyph, COLORREF colour) {
    GlyphPen pen(dc, area, colour);
    switch (glyph) {
        case Glyph::Check:
            pen.Line({{6, 12.5F}, {10.5F, 17}, {18, 8}});
            break;
        case Glyph::Exclamation:
            pen.Line({{12, 6}, {12, 13.5F}});
            pen.Line({{12, 17.5F}, {12, 17.6F}});
            break;
        case Glyph::Guide:
            pen.Line({{5, 3}, {15, 3}, {19, 7}, {19, 21}, {5, 21}, {5, 3}});
            pen.Line({{15, 3}, {15, 7}, {19, 7}});
            pen.Line({{8.5F, 12}, {15.5F, 12}});
            pen.Line({{8.5F, 16}, {15.5F, 16}});
            break;
        case Glyph::Install:
            pen.Line({{12, 3}, {12, 14}});
            pen.Line({{7.5F, 10}, {12, 14.5F}, {16.5F, 10}});
            pen.Line({{4, 15}, {4, 20}, {20, 20}, {20, 15}});
            break;
        case Glyph::Browse:
            pen.Line({{12, 6.5F}, {8.5F, 5}, {3, 5}, {3, 18.5F}, {8.5F, 18.5F}, {12, 20}});
            pen.Line({{12, 6.5F}, {15.5F, 5}, {21, 5}, {21, 18.5F}, {15.5F, 18.5F}, {12, 20}});
            pen.Line({{12, 6.5F}, {12, 20}});
            break;
    }
}

RECT Area(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

RECT Shrunk(const RECT& area, int by) {
    return {area.left + by, area.top + by, area.right - by, area.bottom - by};
}

}  // namespace mip
