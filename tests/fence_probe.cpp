// Must not compile: see the test build.MiddleRingCannotSeeWindows.
#include <windows.h>
