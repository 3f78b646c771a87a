#pragma once

#include <windows.h>

#include <commctrl.h>
