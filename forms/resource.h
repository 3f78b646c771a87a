#pragma once

#define IDI_PROGRAM 1
