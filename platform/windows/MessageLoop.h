#pragma once

#include <windows.h>

namespace mip {

/// Gives one message to its window. Keys go through the dialog that the window belongs to (tab order, mnemonics, Enter
/// and Esc), so that screens that are not modal need no hook of their own.
void HandleMessage(MSG& message);
/// Handles every message that waits, then returns. A quit message stays for the program's own loop.
void ServeWaitingMessages();

}  // namespace mip
