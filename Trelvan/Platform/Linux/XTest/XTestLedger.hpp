#pragma once

#include "Platform/Linux/XTest/PressedState.hpp"

struct _XDisplay;

namespace trelvan {

/// Sends buttons and keys through XTEST on one connection and keeps the page's account of which are down, so
/// that none stays down when the program ends. Not thread-safe; its owner's thread or lock guards it.
class XTestLedger {
  public:
    /// The page must outlive the ledger.
    XTestLedger(_XDisplay* display, Pressed& pressed) : display_(display), pressed_(pressed) {}
    XTestLedger(const XTestLedger&) = delete;
    XTestLedger& operator=(const XTestLedger&) = delete;
    ~XTestLedger() { releaseAll(); }

    /// A release goes out at once; a press may wait in the connection's buffer.
    void button(int xButton, bool down);
    /// An X key code, 8 to 255.
    void key(int keycode, bool down);

    [[nodiscard]] bool isKeyDown(int keycode) const { return pressed_.keys.test(keycode); }
    [[nodiscard]] bool anyKeyDown() const { return pressed_.keys.any(); }

    /// Releases all that is down and waits until the server has done it.
    void releaseAll();

  private:
    _XDisplay* display_;
    Pressed& pressed_;
};

}  // namespace trelvan
