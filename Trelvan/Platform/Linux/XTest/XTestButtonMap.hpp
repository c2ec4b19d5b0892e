#pragma once

#include <array>
#include <memory>

struct _XDisplay;

namespace trelvan {

/// The XTEST pointer's button map. The device has few buttons (ten, as a rule), and the server drops events
/// of others; but a button's number for applications is what the map says, which can be any. Main thread.
class XTestButtonMap {
  public:
    explicit XTestButtonMap(_XDisplay* display);
    XTestButtonMap(const XTestButtonMap&) = delete;
    XTestButtonMap& operator=(const XTestButtonMap&) = delete;
    ~XTestButtonMap();

    /// The highest number of the protocol where the server does not say.
    [[nodiscard]] int buttonCount() const { return buttonCount_; }

    /// Makes the place, which must be up, arrive as the number. The rest of the map stays as it is now,
    /// whoever set it.
    void setNumber(int place, int number);

    /// Gives back places that stand in for buttons which the device does not have.
    void restoreBeyond();

  private:
    struct Device;

    int readMap();

    _XDisplay* display_;
    std::unique_ptr<Device> device_;
    int buttonCount_ = 255;
    /// By place, counted from 0: the number that applications see.
    std::array<unsigned char, 256> map_{};
};

}  // namespace trelvan
