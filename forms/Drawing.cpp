#include "forms/Drawing.h"

#include <algorithm>
#include <cstdint>
#include <vector>

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

/// Part of a picture that is drawn four times as large and then made small again, each pixel the mean of sixteen: the
/// system's own shapes have rough edges.
class SmoothPart {
  public:
    SmoothPart(HDC target, const RECT& area)
        : target_(target),
          area_(area),
          width_(area.right - area.left),
          height_(area.bottom - area.top),
          dc_(CreateCompatibleDC(target)),
          bitmap_(MakeBitmap(target, width_ * Scale, height_ * Scale, &large_)),
          selected_(Dc(), bitmap_.Get()) {
        SetStretchBltMode(Dc(), COLORONCOLOR);
        StretchBlt(Dc(), 0, 0, width_ * Scale, height_ * Scale, target, area.left, area.top, width_, height_, SRCCOPY);
    }
    SmoothPart(const SmoothPart&) = delete;
    SmoothPart& operator=(const SmoothPart&) = delete;
    ~SmoothPart() {
        GdiFlush();
        Shrink();
    }

    static constexpr int Scale = 4;
    HDC Dc() const { return dc_.Get(); }
    int Width() const { return width_ * Scale; }
    int Height() const { return height_ * Scale; }

  private:
    static HBITMAP MakeBitmap(HDC dc, int width, int height, std::uint32_t** pixels) {
        BITMAPINFO info = InfoFor(width, height);
        void* bits = nullptr;
        const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        *pixels = static_cast<std::uint32_t*>(bits);
        return bitmap;
    }

    static BITMAPINFO InfoFor(int width, int height) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        return info;
    }

    void Shrink() {
        if (large_ == nullptr) {
            return;
        }
        std::vector<std::uint32_t> small(static_cast<std::size_t>(width_ * height_));
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                small[static_cast<std::size_t>(y * width_ + x)] = Mean(x * Scale, y * Scale);
            }
        }
        const BITMAPINFO info = InfoFor(width_, height_);
        SetDIBitsToDevice(target_, area_.left, area_.top, static_cast<DWORD>(width_), static_cast<DWORD>(height_), 0, 0,
                          0, static_cast<UINT>(height_), small.data(), &info, DIB_RGB_COLORS);
    }

    std::uint32_t Mean(int left, int top) const {
        std::uint32_t red = 0;
        std::uint32_t green = 0;
        std::uint32_t blue = 0;
        for (int y = top; y < top + Scale; ++y) {
            const std::uint32_t* row = large_ + static_cast<std::ptrdiff_t>(y) * width_ * Scale;
            for (int x = left; x < left + Scale; ++x) {
                red += row[x] >> 16 & 0xFF;
                green += row[x] >> 8 & 0xFF;
                blue += row[x] & 0xFF;
            }
        }
        constexpr std::uint32_t count = Scale * Scale;
        return red / count << 16 | green / count << 8 | blue / count;
    }

    HDC target_;
    RECT area_;
    int width_;
    int height_;
    std::uint32_t* large_ = nullptr;
    MemoryDc dc_;
    GdiObject bitmap_;
    SelectedObject selected_;
};

/// A pen or brush that is in use for as long as the object lives.
class UsedTool {
  public:
    UsedTool(HDC dc, HGDIOBJ tool) : tool_(tool), selected_(dc, tool) {}

  private:
    GdiObject tool_;
    SelectedObject selected_;
};

HBITMAP ClientBitmap(HDC dc, HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return CreateCompatibleBitmap(dc, std::max<int>(client.right, 1), std::max<int>(client.bottom, 1));
}

HPEN RoundPen(int width, COLORREF colour) {
    const LOGBRUSH brush{BS_SOLID, colour, 0};
    return ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND, static_cast<DWORD>(width), &brush, 0,
                        nullptr);
}

/// A point on a glyph's square of 24 units.
struct GlyphPoint {
    double X;
    double Y;
};
using Stroke = std::vector<GlyphPoint>;

std::vector<Stroke> StrokesOf(Glyph glyph) {
    switch (glyph) {
        case Glyph::Check:
            return {{{6, 12.5}, {10.5, 17}, {18, 8}}};
        case Glyph::Exclamation:
            return {{{12, 5.5}, {12, 13.5}}, {{12, 18}, {12, 18.1}}};
        case Glyph::Guide:
            return {{{5, 3}, {15, 3}, {19, 7}, {19, 21}, {5, 21}, {5, 3}},
                    {{15, 3}, {15, 7}, {19, 7}},
                    {{8.5, 12}, {15.5, 12}},
                    {{8.5, 16}, {15.5, 16}}};
        case Glyph::Install:
            return {{{12, 3}, {12, 14}}, {{7.5, 10}, {12, 14.5}, {16.5, 10}}, {{4, 15}, {4, 20}, {20, 20}, {20, 15}}};
        case Glyph::Browse:
            return {{{12, 6.5}, {8.5, 5}, {3, 5}, {3, 18.5}, {8.5, 18.5}, {12, 20}},
                    {{12, 6.5}, {15.5, 5}, {21, 5}, {21, 18.5}, {15.5, 18.5}, {12, 20}},
                    {{12, 6.5}, {12, 20}}};
    }
    return {};
}

}  // namespace

Palette Colours() {
    return IsHighContrastOn() ? SystemPalette() : HousePalette;
}

BufferedPaint::BufferedPaint(HWND window)
    : window_(window),
      dc_(BeginPaint(window, &paint_)),
      memory_(CreateCompatibleDC(dc_)),
      bitmap_(ClientBitmap(dc_, window)),
      selected_(Dc(), bitmap_.Get()) {}

BufferedPaint::~BufferedPaint() {
    const RECT& area = paint_.rcPaint;
    BitBlt(dc_, area.left, area.top, area.right - area.left, area.bottom - area.top, Dc(), area.left, area.top,
           SRCCOPY);
    EndPaint(window_, &paint_);
}

void FillArea(HDC dc, const RECT& area, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void FillRounded(HDC dc, const RECT& area, int radius, COLORREF fill, COLORREF border) {
    const SmoothPart part(dc, area);
    const UsedTool brush(part.Dc(), CreateSolidBrush(fill));
    const UsedTool pen(part.Dc(), CreatePen(PS_INSIDEFRAME, SmoothPart::Scale, border));
    const int corner = 2 * radius * SmoothPart::Scale;
    RoundRect(part.Dc(), 0, 0, part.Width(), part.Height(), corner, corner);
}

void FillCircle(HDC dc, const RECT& area, COLORREF colour) {
    const SmoothPart part(dc, area);
    const UsedTool brush(part.Dc(), CreateSolidBrush(colour));
    const UsedTool pen(part.Dc(), CreatePen(PS_NULL, 0, 0));
    Ellipse(part.Dc(), 0, 0, part.Width(), part.Height());
}

void DrawGlyph(HDC dc, const RECT& area, Glyph glyph, COLORREF colour) {
    const SmoothPart part(dc, area);
    const double unit = part.Width() / 24.0;
    const UsedTool pen(part.Dc(), RoundPen(static_cast<int>(2 * unit), colour));
    for (const Stroke& stroke : StrokesOf(glyph)) {
        std::vector<POINT> points;
        for (const GlyphPoint& point : stroke) {
            points.push_back({static_cast<LONG>(point.X * unit), static_cast<LONG>(point.Y * unit)});
        }
        Polyline(part.Dc(), points.data(), static_cast<int>(points.size()));
    }
}

RECT Area(int left, int top, int width, int height) {
    return {left, top, left + width, top + height};
}

RECT Shrunk(const RECT& area, int by) {
    return {area.left + by, area.top + by, area.right - by, area.bottom - by};
}

}  // namespace mip
