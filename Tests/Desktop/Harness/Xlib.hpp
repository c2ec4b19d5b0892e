#pragma once

#include <X11/Xlib.h>

// Xlib's macros of these two names would take them from GoogleTest.
#undef None
#undef Bool
// NOLINTNEXTLINE(modernize-use-using): the name that the other X headers expect
typedef int Bool;
inline constexpr unsigned long None = 0;
