#include "app/Messages.h"

#include "app/modSysParameter.h"

namespace mip {

void FailRun(Program& program, std::int16_t message) {
    program.Outcome.ResultMessage = GetMessageText(program, message);
    program.Outcome.ResultSubMessage = GetMessageText(program, messages::WhatNow);
}

}  // namespace mip
