#pragma once

#include <windows.h>

namespace mip {

/// Gives one message to its window. Keys go through the dialog that the window belongs to (tab order, mnemonics, Enter
/// and Esc), so that screens that are not modal need no hook of their own.
void HandleMessage(MSG& message);
/// Handles messages until the program is told to quit; returns the exit code that it is told.
int RunMessageLoop();
/// Handles every message that waits, then returns. A quit message stays for RunMessageLoop.
void ServeWaitingMessages();

}  // namespace mip
