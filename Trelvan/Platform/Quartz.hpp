#pragma once

#include <cstdint>

/// The one event language of the core, on every platform: the numbers of the Quartz event services.
/// A platform with other codes translates at its own border.
namespace trelvan {

/// What kind of event reached the tap (CGEventType).
enum class EventType : std::uint32_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    mouseMoved = 5,
    leftMouseDragged = 6,
    rightMouseDragged = 7,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    systemDefined = 14,
    scrollWheel = 22,
    otherMouseDown = 25,
    otherMouseUp = 26,
    otherMouseDragged = 27,
    /// Not an event: the system took the tap out of service because a callback was too slow.
    tapDisabledByTimeout = 0xFFFFFFFE,
    /// Not an event: the system took the tap out of service on the user's demand.
    tapDisabledByUserInput = 0xFFFFFFFF,
};

/// The bit of an event type in a tap's mask; 0 for the two pseudo-types, which are never masked.
constexpr std::uint64_t maskBit(EventType type) {
    const auto number = static_cast<std::uint32_t>(type);
    return number < 64 ? std::uint64_t{1} << number : 0;
}

/// Integer field numbers of an event (CGEventField).
enum class EventField : std::uint32_t {
    mouseButtonNumber = 3,
    mouseDeltaX = 4,
    mouseDeltaY = 5,
    scrollDeltaAxis1 = 11,
    scrollDeltaAxis2 = 12,
    sourceUserData = 42,
    scrollPointDeltaAxis1 = 96,
    scrollPointDeltaAxis2 = 97,
};

/// Where in the event stream a tap sits or an event is posted (CGEventTapLocation).
enum class TapLocation : std::uint32_t { hid = 0, session = 1, annotatedSession = 2 };

/// Whose state is asked for (CGEventSourceStateID).
enum class EventSourceState : std::int32_t { combinedSession = 0, hidSystem = 1 };

/// A set of modifier flags (CGEventFlags).
using EventFlags = std::uint64_t;

namespace flag {
inline constexpr EventFlags alphaShift = 0x10000;
inline constexpr EventFlags shift = 0x20000;
inline constexpr EventFlags control = 0x40000;
inline constexpr EventFlags option = 0x80000;
inline constexpr EventFlags command = 0x100000;
inline constexpr EventFlags numericPad = 0x200000;
inline constexpr EventFlags function = 0x800000;
}  // namespace flag

/// A virtual key code: the place of a key on the keyboard (CGKeyCode).
using KeyCode = std::uint16_t;

/// The key codes that the system itself sends.
namespace key {
inline constexpr KeyCode a = 0;
inline constexpr KeyCode z = 6;
inline constexpr KeyCode x = 7;
inline constexpr KeyCode c = 8;
inline constexpr KeyCode v = 9;
inline constexpr KeyCode q = 12;
inline constexpr KeyCode digit3 = 20;
inline constexpr KeyCode digit4 = 21;
inline constexpr KeyCode digit5 = 23;
inline constexpr KeyCode returnKey = 36;
inline constexpr KeyCode l = 37;
inline constexpr KeyCode n = 45;
inline constexpr KeyCode period = 47;
inline constexpr KeyCode space = 49;
inline constexpr KeyCode rightCommand = 54;
inline constexpr KeyCode command = 55;
inline constexpr KeyCode shift = 56;
inline constexpr KeyCode capsLock = 57;
inline constexpr KeyCode option = 58;
inline constexpr KeyCode control = 59;
inline constexpr KeyCode rightShift = 60;
inline constexpr KeyCode rightOption = 61;
inline constexpr KeyCode rightControl = 62;
inline constexpr KeyCode function = 63;
inline constexpr KeyCode f3 = 99;
inline constexpr KeyCode f11 = 103;
inline constexpr KeyCode f13 = 105;
inline constexpr KeyCode f10 = 109;
inline constexpr KeyCode f12 = 111;
/// The place of Insert on a PC keyboard.
inline constexpr KeyCode help = 114;
inline constexpr KeyCode leftArrow = 123;
inline constexpr KeyCode rightArrow = 124;
inline constexpr KeyCode downArrow = 125;
inline constexpr KeyCode upArrow = 126;
}  // namespace key

/// The media keys that the system itself sends (NX_KEYTYPE).
enum class MediaKey : std::int32_t { volumeUp = 0, volumeDown = 1, mute = 7, playPause = 16 };

}  // namespace trelvan
