// Must not compile: see the test MiddleRingCannotSeeWindows.
#include <windows.h>
