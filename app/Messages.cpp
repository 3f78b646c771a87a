#include "app/Messages.h"

#include "app/Failure.h"
#include "app/Program.h"
#include "app/modSysParameter.h"
#include "text/TextTools.h"

namespace mip {

void FailRun(Program& program, std::int16_t message, const std::wstring& insert) {
    Outcome& outcome = program.Outcome;
    const std::wstring text = GetMessageText(program, message);
    outcome.ResultMessage = insert.empty() ? text : ReplaceAll(text, L"@", insert);
    outcome.ResultSubMessage = GetMessageText(program, messages::WhatNow);
    program.Log.Message(message, outcome.ResultMessage);
}

void FailRun(Program& program, std::int16_t message, std::string_view routine, const std::exception& error) {
    program.Log.Trapped(routine, error);
    if (const auto* failure = dynamic_cast<const Failure*>(&error)) {
        FailRun(program, failure->Message(), failure->Insert());
    } else {
        FailRun(program, message);
    }
}

}  // namespace mip
