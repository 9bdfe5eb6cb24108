#pragma once

// The platform's own headers, in the order that they want and without what this project never uses.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif

#include <winsock2.h>
//
#include <windows.h>
