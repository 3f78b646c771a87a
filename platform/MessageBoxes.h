#pragma once

#include <string>

namespace mip {

/// Style bits and answers of a message box, with the system's values.
namespace boxes {
inline constexpr int Ok = 0;
inline constexpr int YesNo = 4;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
inline constexpr int SecondButtonDefault = 256;
inline constexpr int AnswerOk = 1;
inline constexpr int AnswerYes = 6;
inline constexpr int AnswerNo = 7;
}  // namespace boxes

class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// Shows a modal box over the screen that is open and returns the answer. An empty title is replaced by the
    /// program's name.
    virtual int Show(const std::wstring& text, int style, const std::wstring& title) = 0;
};

}  // namespace mip
