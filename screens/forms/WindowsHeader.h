#pragma once

#include <windows.h>

#include <commctrl.h>

#undef Yield  // an empty macro for 16-bit programs; the clock has an operation of that name
