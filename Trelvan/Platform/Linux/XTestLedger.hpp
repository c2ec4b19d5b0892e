#pragma once

#include <bitset>

struct _XDisplay;

namespace trelvan {

/// Sends buttons and keys through XTEST on one connection and remembers which are down, so that none stays
/// down when the program ends. Not thread-safe; its owner's thread or lock guards it.
class XTestLedger {
  public:
    explicit XTestLedger(_XDisplay* display) : display_(display) {}
    XTestLedger(const XTestLedger&) = delete;
    XTestLedger& operator=(const XTestLedger&) = delete;
    ~XTestLedger() { releaseAll(); }

    void button(int xButton, bool down);
    /// An X key code, 8 to 255.
    void key(int keycode, bool down);

    [[nodiscard]] bool isKeyDown(int keycode) const { return keys_.test(static_cast<std::size_t>(keycode)); }
    [[nodiscard]] bool anyKeyDown() const { return keys_.any(); }

    /// Releases all that is down and waits until the server has done it.
    void releaseAll();

  private:
    _XDisplay* display_;
    std::bitset<256> buttons_;
    std::bitset<256> keys_;
};

}  // namespace trelvan
