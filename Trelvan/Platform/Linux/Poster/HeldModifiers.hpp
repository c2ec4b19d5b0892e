#pragma once

#include "Platform/Linux/X11/ModifierMap.hpp"
#include "Platform/Linux/XTest/XTestLedger.hpp"

#include <vector>

namespace trelvan {

/// Takes the modifier keys that the user holds out of the way of a synthetic shortcut and gives them back.
///
/// A release through XTEST lifts the key for the applications although a keyboard still holds it; a press
/// puts it back, and the keyboard's own release then lifts it for good. The press leaves the key down on the
/// XTEST device alone, which nobody sees but which would make its next press a repetition, so it is lifted
/// there as soon as the user lets the key go. Not thread-safe; guarded by the poster's lock.
class HeldModifiers {
  public:
    /// `account` has the keys that were put back; it outlives this object.
    HeldModifiers(_XDisplay* display, XTestLedger& ledger, SharedBits& account)
        : display_(display), ledger_(ledger), account_(account) {}

    /// Lifts the held modifier keys that set none of the wanted modifiers.
    void suspendAllBut(unsigned wanted, const ModifierMap& map);
    /// A synthetic modifier key went up, which lifts it for the applications even where the user holds it
    /// too.
    void noteLifted(int keycode, const ModifierMap& map);
    /// Puts back those that are still held.
    void resume();
    /// Gives up: what was put back is lifted on the XTEST device, what was lifted stays so until pressed
    /// again.
    void abandon();

    /// Lifts keys that were put back and that the user has let go since.
    void settle();
    /// A key that was put back is about to be pressed: its press must not count as a repetition.
    void forgetBeforePress(int keycode);
    [[nodiscard]] bool anyPutBack() const { return !putBack_.empty(); }

  private:
    /// The key codes that are down on a real keyboard.
    [[nodiscard]] CodeSet physicallyDown() const;
    /// Lifts a key that was put back on the XTEST device; it is put back no longer.
    void liftPutBack(int keycode);
    /// A lone tap of Super or Alt opens menus; a tap of Control in between makes it none.
    void mask(const std::vector<int>& keycodes);

    _XDisplay* display_;
    XTestLedger& ledger_;
    SharedBits& account_;
    std::vector<int> suspended_;
    std::vector<int> putBack_;
    unsigned menuModifiers_ = 0;
    ModifierMap map_;
};

}  // namespace trelvan
