#pragma once

#include <string>

#include "app/RunLog.h"
#include "app/Switches.h"
#include "platform/MessageBoxes.h"

namespace mip {

/// The message boxes of a run: shown as they are, but in a quiet run written to the log and given their default answer.
class RunBoxes final : public MessageBoxes {
  public:
    RunBoxes(MessageBoxes& shown, const Switches& switches, RunLog& log)
        : shown_(shown), switches_(switches), log_(log) {}

    int Show(const std::wstring& text, int style, const std::wstring& title) override;

  private:
    MessageBoxes& shown_;
    const Switches& switches_;
    RunLog& log_;
};

}  // namespace mip
