#pragma once

#include "Platform/TapEvent.hpp"

#include <cstdint>

namespace trelvan {

/// What the tap does with the event it was asked about.
enum class TapAnswer : std::uint8_t { deliver, swallow };

/// The place in the pipeline of every pointer event, ahead of all applications.
///
/// All calls and the callback are made on the main thread. There is at most one tap.
class EventTap {
  public:
    /// Called for each event whose type is in the mask, and for the two tap-disabled pseudo-types whatever
    /// the mask (the event then carries nothing but its type, and the answer is not looked at). A plain
    /// function pointer: it runs up to 8,000 times a second.
    using Callback = TapAnswer (*)(void* userInfo, TapEvent& event);

    virtual ~EventTap() = default;

    /// Creates the tap, switched off. Types outside `mask` go to the system untouched.
    /// False when the system refuses (for want of permission, as a rule); nothing is held then.
    [[nodiscard]] virtual bool create(std::uint64_t mask, Callback callback, void* userInfo) = 0;

    /// Switches an existing tap on or, called with false, off. Called again after a tap-disabled pseudo-type.
    virtual void enable(bool on) = 0;

    /// Whether the platform passes the release of a press that was passed, and keeps back that of one that
    /// was swallowed, whatever the callback answers to it. Where it does not, the answer counts.
    [[nodiscard]] virtual bool releasesFollowPresses() const { return false; }

    /// Takes the tap away; every event goes to the system again. No callback comes after it returns.
    virtual void remove() = 0;
};

}  // namespace trelvan
