#pragma once

#include "platform/Clock.h"

namespace mip {

class WindowsClock : public Clock {
  public:
    DateTime Now() override;
    void Sleep(std::chrono::milliseconds duration) override;
    void YieldToMessages() override;
};

}  // namespace mip
