#include "forms/Fonts.h"

namespace mip {

Fonts::~Fonts() {
    for (const auto& [key, font] : fonts_) {
        DeleteObject(font);
    }
}

HFONT Fonts::Get(int points, bool bold, int dpi) {
    HFONT& font = fonts_[{points, bold, dpi}];
    if (font == nullptr) {
        LOGFONTW description{};
        description.lfHeight = -MulDiv(points, dpi, 72);
        description.lfWeight = bold ? FW_BOLD : FW_NORMAL;
        // Where the Japanese face goes by another name, the character set still finds a Japanese font.
        description.lfCharSet = face_ == L"Arial" ? DEFAULT_CHARSET : SHIFTJIS_CHARSET;
        description.lfQuality = CLEARTYPE_QUALITY;
        description.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
        face_.copy(description.lfFaceName, LF_FACESIZE - 1);
        font = CreateFontIndirectW(&description);
    }
    return font;
}

}  // namespace mip
