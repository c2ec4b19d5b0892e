#pragma once

// The X libraries for the files that speak to the server; never included from a header that others include.
// The macros that collide with Qt and with ordinary words are taken away again below.

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/scrnsaver.h>
#include <X11/keysym.h>

#include <array>

#undef Bool
#undef Status
#undef None
#undef True
#undef False
#undef Unsorted
#undef KeyPress
#undef KeyRelease
#undef FocusIn
#undef FocusOut
#undef FontChange
#undef Expose
#undef CursorShape
#undef Above
#undef Below
#undef Always
#undef Success

namespace trelvan::x11 {

inline constexpr int yes = 1;
inline constexpr int no = 0;
inline constexpr unsigned long none = 0;
inline constexpr int success = 0;

/// A set of XInput 2 event types in the form the library takes.
class EventMask {
  public:
    EventMask(int deviceId, std::initializer_list<int> events) {
        for (const int event : events) {
            auto& byte = bits_[static_cast<std::size_t>(event) / 8];
            byte = static_cast<unsigned char>(byte | (1U << (static_cast<unsigned>(event) % 8)));
        }
        mask_.deviceid = deviceId;
        mask_.mask_len = static_cast<int>(bits_.size());
        mask_.mask = bits_.data();
    }
    EventMask(const EventMask&) = delete;
    EventMask& operator=(const EventMask&) = delete;

    XIEventMask* get() { return &mask_; }

  private:
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits_{};
    XIEventMask mask_{};
};

/// Whether a bit is set in a mask that came from the library.
inline bool isSet(const unsigned char* mask, int length, int bit) {
    return bit / 8 < length && (mask[bit / 8] & (1U << (static_cast<unsigned>(bit) % 8))) != 0;
}

}  // namespace trelvan::x11
