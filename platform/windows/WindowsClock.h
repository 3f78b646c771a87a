#pragma once

#include "platform/Clock.h"

namespace mip {

class WindowsClock : public Clock {
  public:
    DateTime Now() override;
    void Sleep(std::chrono::milliseconds duration) override;
    void Yield() override;
};

}  // namespace mip
