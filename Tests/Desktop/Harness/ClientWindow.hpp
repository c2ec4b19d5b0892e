#pragma once

#include "Desktop/Harness/Wait.hpp"
#include "Desktop/Harness/XConnection.hpp"
#include "Desktop/Harness/Xlib.hpp"

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A turn of the wheel in lines, up and left positive.
struct Turn {
    double vertical = 0;
    double horizontal = 0;
    friend bool operator==(const Turn&, const Turn&) = default;
};
void PrintTo(const Turn& turn, std::ostream* out);

/// One event as an application received it.
struct ClientEvent {
    enum class Kind { keyPress, keyRelease, buttonPress, buttonRelease, motion };

    Kind kind = Kind::motion;
    unsigned button = 0;  ///< X button number
    KeySym key = 0;       ///< of the key without modifiers
    unsigned state = 0;   ///< modifiers and buttons held before the event, X mask
    int x = 0;            ///< on the screen
    int y = 0;
    unsigned long time = 0;  ///< the server's, in milliseconds
    /// Of XInput 2 only: a button that the server made for a turn that `scrolled` tells too.
    bool emulated = false;
    /// Of XInput 2 only: the turn of a wheel with smooth axes, up and left positive.
    Turn scrolled{};
};

/// A key with the modifiers that it came with.
struct KeyStroke {
    KeySym key = 0;
    unsigned modifiers = 0;  ///< of Shift, Control, Mod1 (Alt) and Mod4 (Super)

    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

/// For test output: "Control+c".
std::string describe(const KeyStroke& stroke);
void PrintTo(const KeyStroke& stroke, std::ostream* out);
/// For test output: one line per event.
std::string describe(const std::vector<ClientEvent>& events);

struct Position {
    int x = 0;
    int y = 0;
    friend bool operator==(const Position&, const Position&) = default;
};
void PrintTo(const Position& position, std::ostream* out);

/// How an application asks for its input: the core protocol, or XInput 2 as the toolkits of today do.
enum class Protocol { core, xinput2 };

/// An ordinary application's window, focused and with the pointer in its middle, which records what reaches
/// it. Main thread.
class ClientWindow {
  public:
    using Kind = ClientEvent::Kind;
    using Predicate = std::function<bool(const std::vector<ClientEvent>&)>;

    /// Returns when the window is on the screen and has the focus; throws std::runtime_error when it does not
    /// get there. Without a class it is of no known application.
    explicit ClientWindow(const std::string& displayName, Protocol protocol = Protocol::core,
                          const std::string& title = "Client", const std::string& windowClass = "");
    ~ClientWindow();
    ClientWindow(const ClientWindow&) = delete;
    ClientWindow& operator=(const ClientWindow&) = delete;

    /// Everything received so far, oldest first.
    const std::vector<ClientEvent>& events();
    void forget();

    /// Reads events until the predicate holds for all that were received; false when it has not within the
    /// bound.
    bool waitFor(const Predicate& predicate, std::chrono::milliseconds bound = timeout);
    bool waitForStroke(KeyStroke stroke, std::chrono::milliseconds bound = timeout);
    bool waitForButton(Kind kind, unsigned button, int count = 1, std::chrono::milliseconds bound = timeout);

    [[nodiscard]] int count(Kind kind, unsigned button);
    /// The keys pressed other than modifier keys, in order.
    [[nodiscard]] std::vector<KeyStroke> strokes();
    /// The numbers of the buttons pressed, in order.
    [[nodiscard]] std::vector<unsigned> buttonsPressed();
    /// How far a window scrolls for what was received, counted as a toolkit does: smooth turns, and of the
    /// wheel buttons only those that do not stand for one.
    [[nodiscard]] Turn scrolled();

    /// Puts the pointer at a place on the screen without any device's help.
    void warpPointer(Position to);
    [[nodiscard]] Position pointer();
    [[nodiscard]] Position middle();
    /// Whether the server takes any button or key as held.
    [[nodiscard]] bool isAnythingHeld();
    [[nodiscard]] int keyCode(KeySym key);

    [[nodiscard]] XConnection& connection() { return server; }
    [[nodiscard]] Window window() const { return frame; }

  private:
    void appear(const std::string& title, const std::string& windowClass);
    void selectXInput2();
    void readPending();
    void record(XEvent& event);
    void recordXInput2(XGenericEventCookie& cookie);
    /// Learns where the smooth axes of all devices stand.
    void readScrollAxes();
    Turn turn(int device, int maskLength, const unsigned char* mask, const double* values);
    KeySym plainKey(unsigned keyCode);

    XConnection server;
    Window frame = None;
    int xinputOpcode = -1;
    std::vector<ClientEvent> received;

    struct ScrollAxis {
        bool vertical = false;
        double increment = 1;
        double value = 0;
    };
    /// By device and number of the axis.
    std::map<std::pair<int, int>, ScrollAxis> scrollAxes;
};

}  // namespace trelvan::desktop
