#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "forms/WindowsHeader.h"

namespace mip {

/// The fonts of one window: a face in several sizes, made when they are first asked for.
class Fonts {
  public:
    explicit Fonts(std::wstring face) : face_(std::move(face)) {}
    Fonts(const Fonts&) = delete;
    Fonts& operator=(const Fonts&) = delete;
    ~Fonts();

    HFONT Get(int points, bool bold, int dpi);

  private:
    std::wstring face_;
    std::map<std::tuple<int, bool, int>, HFONT> fonts_;
};

}  // namespace mip
