#pragma once

#include <string>

#include <windows.h>

namespace mip {

/// Has pictures of windows taken by screenshots.py: a picture is asked for by a file NAME.request in its folder, which
/// holds the part of the screen that is meant, and is there when that file is gone.
class Photographer {
  public:
    explicit Photographer(std::wstring folder) : folder_(std::move(folder)) {}

    /// Takes a picture of a window that is painted. Throws std::runtime_error when none comes.
    void Take(HWND window, const std::wstring& name) const;

  private:
    std::wstring folder_;
};

}  // namespace mip
