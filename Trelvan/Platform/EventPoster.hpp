#pragma once

#include "Platform/KeyChord.hpp"
#include "Platform/Quartz.hpp"
#include "Platform/TapEvent.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace trelvan {

/// A synthetic key event, made and ready to post.
struct KeyEvent {
    KeyCode keyCode = 0;
    bool down = false;
    EventFlags flags = 0;
    /// The platform's own event, where it has to be made beforehand.
    std::shared_ptr<void> native;
};

/// A synthetic mouse event, made and ready to post.
struct MouseEvent {
    EventType type = EventType::mouseMoved;
    std::int64_t buttonNumber = 0;
    TopLeftPoint location{};
    std::shared_ptr<void> native;
};

/// A synthetic system-defined event of subtype 8 at location zero: one edge of a media key.
struct MediaKeyEvent {
    EventFlags flags = 0;
    std::int64_t data1 = 0;
    std::int64_t data2 = -1;
};

/// Makes and posts synthetic events.
///
/// Every call may come from any thread; one call is one event, whole. Making an event can fail (no value);
/// posting gives no feedback, as the systems give none.
class EventPoster {
  public:
    virtual ~EventPoster() = default;

    [[nodiscard]] virtual std::optional<KeyEvent> makeKey(EventSourceState source, KeyCode keyCode, bool down,
                                                          EventFlags flags) = 0;
    /// `type` is a button or a motion type.
    [[nodiscard]] virtual std::optional<MouseEvent> makeMouse(EventType type, std::int64_t buttonNumber,
                                                              TopLeftPoint location) = 0;

    /// The key that types the character in the keyboard layout in use, with the Shift it may take. None where
    /// the layout has no such key, and on a platform whose shortcuts go by the key's place.
    [[nodiscard]] virtual std::optional<KeyChord> keyTyping(char32_t /*character*/) { return std::nullopt; }

    virtual void post(const KeyEvent& event, TapLocation at) = 0;
    virtual void post(const MouseEvent& event, TapLocation at) = 0;
    virtual void post(const MediaKeyEvent& event, TapLocation at) = 0;

    /// Posts a duplicate of the system event behind `changed`, carrying its members.
    /// Only during the tap callback that handed the event out. False when the system cannot duplicate it;
    /// nothing was posted then. Allocates nothing of its own: it runs for every scaled movement.
    [[nodiscard]] virtual bool postCopy(const TapEvent& changed, TapLocation at) = 0;
};

}  // namespace trelvan
