#include "app/RunBoxes.h"

namespace mip {
namespace {

int DefaultAnswer(int style) {
    if ((style & boxes::YesNo) == 0) {
        return boxes::AnswerOk;
    }
    return (style & boxes::SecondButtonDefault) == 0 ? boxes::AnswerYes : boxes::AnswerNo;
}

}  // namespace

int RunBoxes::Show(const std::wstring& text, int style, const std::wstring& title) {
    if (!switches_.IsQuiet()) {
        return shown_.Show(text, style, title);
    }
    log_.Write(L"message", L"", text);
    return DefaultAnswer(style);
}

}  // namespace mip
