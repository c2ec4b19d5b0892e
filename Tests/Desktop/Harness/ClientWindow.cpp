#include "Desktop/Harness/ClientWindow.hpp"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <ostream>
#include <span>
#include <sstream>
#include <stdexcept>

namespace trelvan::desktop {
namespace {

constexpr unsigned modifierMask = ShiftMask | ControlMask | Mod1Mask | Mod4Mask;
constexpr int left = 240;
constexpr int top = 160;
constexpr unsigned windowWidth = 960;
constexpr unsigned windowHeight = 560;
constexpr long inputMask =
    KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask;

}  // namespace

std::string describe(const KeyStroke& stroke) {
    constexpr std::array<std::pair<unsigned, const char*>, 4> names{
        {{ControlMask, "Control+"}, {Mod1Mask, "Alt+"}, {ShiftMask, "Shift+"}, {Mod4Mask, "Super+"}}};
    std::string text;
    for (const auto& [mask, name] : names) {
        if ((stroke.modifiers & mask) != 0) text += name;
    }
    const char* key = XKeysymToString(stroke.key);
    return text + (key != nullptr ? key : "unknown key");
}

void PrintTo(const KeyStroke& stroke, std::ostream* out) {
    *out << describe(stroke);
}

void PrintTo(const Position& position, std::ostream* out) {
    *out << position.x << ", " << position.y;
}

void PrintTo(const Turn& turn, std::ostream* out) {
    *out << turn.vertical << " up, " << turn.horizontal << " left";
}

std::string describe(const std::vector<ClientEvent>& events) {
    constexpr std::array names{"key press", "key release", "button press", "button release", "motion"};
    std::ostringstream text;
    for (const ClientEvent& event : events) {
        text << names.at(static_cast<std::size_t>(event.kind));
        if (event.button != 0) text << ' ' << event.button;
        if (event.key != 0) text << ' ' << describe(KeyStroke{event.key, event.state & modifierMask});
        text << " state 0x" << std::hex << event.state << std::dec << " at " << event.x << ", " << event.y
             << '\n';
    }
    return text.str();
}

ClientWindow::ClientWindow(const std::string& displayName, Protocol protocol, const std::string& title,
                           const std::string& windowClass)
    : server(displayName) {
    XSetWindowAttributes attributes{};
    attributes.background_pixel = 0x16324a;
    attributes.event_mask = StructureNotifyMask | ExposureMask | FocusChangeMask;
    if (protocol == Protocol::core) attributes.event_mask |= inputMask;
    frame =
        XCreateWindow(server.get(), server.root(), left, top, windowWidth, windowHeight, 0, CopyFromParent,
                      InputOutput, CopyFromParent, CWBackPixel | CWEventMask, &attributes);
    // Otherwise a held key arrives as pairs of release and press.
    XkbSetDetectableAutoRepeat(server.get(), True, nullptr);
    if (protocol == Protocol::xinput2) selectXInput2();
    appear(title, windowClass);
}

ClientWindow::~ClientWindow() {
    XDestroyWindow(server.get(), frame);
}

void ClientWindow::selectXInput2() {
    int firstEvent = 0;
    int firstError = 0;
    int major = 2;
    int minor = 2;
    if (XQueryExtension(server.get(), "XInputExtension", &xinputOpcode, &firstEvent, &firstError) == False ||
        XIQueryVersion(server.get(), &major, &minor) != Success) {
        throw std::runtime_error("the X server has no XInput 2");
    }
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    for (const int type : {XI_KeyPress, XI_KeyRelease, XI_ButtonPress, XI_ButtonRelease, XI_Motion}) {
        // What XISetMask does, without its conversion.
        bits.at(static_cast<std::size_t>(type) / 8) |= static_cast<unsigned char>(1U << (type % 8));
    }
    XIEventMask mask{
        .deviceid = XIAllMasterDevices, .mask_len = static_cast<int>(bits.size()), .mask = bits.data()};
    XISelectEvents(server.get(), frame, &mask, 1);
    readScrollAxes();
}

void ClientWindow::readScrollAxes() {
    int count = 0;
    XIDeviceInfo* devices = XIQueryDevice(server.get(), XIAllDevices, &count);
    for (const XIDeviceInfo& device : std::span(devices, static_cast<std::size_t>(count))) {
        const std::span classes(device.classes, static_cast<std::size_t>(device.num_classes));
        for (const XIAnyClassInfo* any : classes) {
            if (any->type != XIScrollClass) continue;
            const auto& scroll = *reinterpret_cast<const XIScrollClassInfo*>(any);
            scrollAxes[{device.deviceid, scroll.number}] = {
                .vertical = scroll.scroll_type == XIScrollTypeVertical, .increment = scroll.increment};
        }
        for (const XIAnyClassInfo* any : classes) {
            if (any->type != XIValuatorClass) continue;
            const auto& valuator = *reinterpret_cast<const XIValuatorClassInfo*>(any);
            const auto axis = scrollAxes.find({device.deviceid, valuator.number});
            if (axis != scrollAxes.end()) axis->second.value = valuator.value;
        }
    }
    XIFreeDeviceInfo(devices);
}

Turn ClientWindow::turn(int device, int maskLength, const unsigned char* mask, const double* values) {
    Turn result;
    for (int number = 0; number < maskLength * 8; ++number) {
        if (!XIMaskIsSet(mask, number)) continue;
        const double value = *values++;
        const auto found = scrollAxes.find({device, number});
        if (found == scrollAxes.end()) continue;
        ScrollAxis& axis = found->second;
        // The server counts down and right as positive.
        (axis.vertical ? result.vertical : result.horizontal) = (axis.value - value) / axis.increment;
        axis.value = value;
    }
    return result;
}

void ClientWindow::appear(const std::string& title, const std::string& windowClass) {
    if (!windowClass.empty()) {
        std::string name = windowClass;
        XClassHint hint{.res_name = name.data(), .res_class = name.data()};
        XSetClassHint(server.get(), frame, &hint);
    }
    XStoreName(server.get(), frame, title.c_str());
    XSizeHints hints{};
    hints.flags = USPosition | USSize;
    hints.x = left;
    hints.y = top;
    hints.width = static_cast<int>(windowWidth);
    hints.height = static_cast<int>(windowHeight);
    XSetWMNormalHints(server.get(), frame, &hints);
    XMapRaised(server.get(), frame);
    const auto isViewable = [&] {
        XWindowAttributes attributes{};
        return XGetWindowAttributes(server.get(), frame, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    };
    const auto isFocused = [&] {
        Window focused = None;
        int revert = 0;
        XGetInputFocus(server.get(), &focused, &revert);
        if (focused == frame) return true;
        if (isViewable()) XSetInputFocus(server.get(), frame, RevertToPointerRoot, CurrentTime);
        return false;
    };
    if (!waitUntil(isViewable)) throw std::runtime_error("the client window does not appear");
    if (!waitUntil(isFocused)) throw std::runtime_error("the client window has no focus");
    // The frame that the window manager puts around the window may still move it.
    const auto isUnderPointer = [&] {
        warpPointer(middle());
        Window root = None;
        Window child = None;
        int x = 0;
        int y = 0;
        unsigned mask = 0;
        Position inside;
        XQueryPointer(server.get(), frame, &root, &child, &x, &y, &inside.x, &inside.y, &mask);
        return inside == Position{static_cast<int>(windowWidth) / 2, static_cast<int>(windowHeight) / 2};
    };
    if (!waitUntil(isUnderPointer))
        throw std::runtime_error("the pointer does not get into the client window");
    XSync(server.get(), False);
    forget();
}

void ClientWindow::warpPointer(Position to) {
    XWarpPointer(server.get(), None, server.root(), 0, 0, 0, 0, to.x, to.y);
    XSync(server.get(), False);
}

Position ClientWindow::middle() {
    Position place;
    Window child = None;
    XTranslateCoordinates(server.get(), frame, server.root(), static_cast<int>(windowWidth) / 2,
                          static_cast<int>(windowHeight) / 2, &place.x, &place.y, &child);
    return place;
}

Position ClientWindow::pointer() {
    Window root = None;
    Window child = None;
    Position place;
    int x = 0;
    int y = 0;
    unsigned mask = 0;
    XQueryPointer(server.get(), server.root(), &root, &child, &place.x, &place.y, &x, &y, &mask);
    return place;
}

bool ClientWindow::isAnythingHeld() {
    std::array<char, 32> keys{};
    XQueryKeymap(server.get(), keys.data());
    Window window = None;
    int place = 0;
    unsigned mask = 0;
    XQueryPointer(server.get(), server.root(), &window, &window, &place, &place, &place, &place, &mask);
    return mask != 0 || std::any_of(keys.begin(), keys.end(), [](char bits) { return bits != 0; });
}

int ClientWindow::keyCode(KeySym key) {
    const int code = XKeysymToKeycode(server.get(), key);
    if (code == 0) throw std::runtime_error(std::string("the keyboard has no key ") + XKeysymToString(key));
    return code;
}

KeySym ClientWindow::plainKey(unsigned keyCode) {
    return XkbKeycodeToKeysym(server.get(), static_cast<KeyCode>(keyCode), 0, 0);
}

void ClientWindow::record(XEvent& event) {
    switch (event.type) {
        case KeyPress:
        case KeyRelease:
            received.push_back({.kind = event.type == KeyPress ? Kind::keyPress : Kind::keyRelease,
                                .key = plainKey(event.xkey.keycode),
                                .state = event.xkey.state,
                                .x = event.xkey.x_root,
                                .y = event.xkey.y_root,
                                .time = event.xkey.time});
            break;
        case ButtonPress:
        case ButtonRelease:
            received.push_back({.kind = event.type == ButtonPress ? Kind::buttonPress : Kind::buttonRelease,
                                .button = event.xbutton.button,
                                .state = event.xbutton.state,
                                .x = event.xbutton.x_root,
                                .y = event.xbutton.y_root,
                                .time = event.xbutton.time});
            break;
        case MotionNotify:
            received.push_back({.state = event.xmotion.state,
                                .x = event.xmotion.x_root,
                                .y = event.xmotion.y_root,
                                .time = event.xmotion.time});
            break;
        case MappingNotify:
            XRefreshKeyboardMapping(&event.xmapping);
            break;
        case GenericEvent:
            if (event.xcookie.extension == xinputOpcode &&
                XGetEventData(server.get(), &event.xcookie) != False) {
                recordXInput2(event.xcookie);
                XFreeEventData(server.get(), &event.xcookie);
            }
            break;
        default:
            break;
    }
}

void ClientWindow::recordXInput2(XGenericEventCookie& cookie) {
    const auto& event = *static_cast<const XIDeviceEvent*>(cookie.data);
    ClientEvent record{.state = static_cast<unsigned>(event.mods.effective),
                       .x = static_cast<int>(event.root_x),
                       .y = static_cast<int>(event.root_y),
                       .time = event.time};
    for (int button = 1; button <= 5; ++button) {
        if (button < event.buttons.mask_len * 8 && XIMaskIsSet(event.buttons.mask, button)) {
            record.state |= Button1Mask << (button - 1);
        }
    }
    const auto detail = static_cast<unsigned>(event.detail);
    switch (event.evtype) {
        case XI_KeyPress:
        case XI_KeyRelease:
            record.kind = event.evtype == XI_KeyPress ? Kind::keyPress : Kind::keyRelease;
            record.key = plainKey(detail);
            break;
        case XI_ButtonPress:
        case XI_ButtonRelease:
            record.kind = event.evtype == XI_ButtonPress ? Kind::buttonPress : Kind::buttonRelease;
            record.button = detail;
            record.emulated = (event.flags & XIPointerEmulated) != 0;
            break;
        default:
            record.scrolled =
                turn(event.sourceid, event.valuators.mask_len, event.valuators.mask, event.valuators.values);
            break;
    }
    received.push_back(record);
}

void ClientWindow::readPending() {
    while (XPending(server.get()) > 0) {
        XEvent event{};
        XNextEvent(server.get(), &event);
        record(event);
    }
}

const std::vector<ClientEvent>& ClientWindow::events() {
    readPending();
    return received;
}

void ClientWindow::forget() {
    readPending();
    received.clear();
}

bool ClientWindow::waitFor(const Predicate& predicate, std::chrono::milliseconds bound) {
    const auto end = std::chrono::steady_clock::now() + bound;
    while (!predicate(events())) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        // What the predicate asked the server may have brought events along, which the descriptor no longer
        // tells of.
        if (XEventsQueued(server.get(), QueuedAfterReading) > 0) continue;
        pollfd readable{.fd = ConnectionNumber(server.get()), .events = POLLIN, .revents = 0};
        ::poll(&readable, 1, static_cast<int>(left.count()));
    }
    return true;
}

bool ClientWindow::waitForStroke(KeyStroke stroke, std::chrono::milliseconds bound) {
    const auto pressedAndReleased = [&](const std::vector<ClientEvent>& all) {
        const auto pressed = std::find_if(all.begin(), all.end(), [&](const ClientEvent& event) {
            return event.kind == Kind::keyPress && event.key == stroke.key &&
                   (event.state & modifierMask) == stroke.modifiers;
        });
        return std::any_of(pressed, all.end(), [&](const ClientEvent& event) {
            return event.kind == Kind::keyRelease && event.key == stroke.key;
        });
    };
    return waitFor(pressedAndReleased, bound);
}

bool ClientWindow::waitForButton(Kind kind, unsigned button, int times, std::chrono::milliseconds bound) {
    return waitFor([&](const auto&) { return count(kind, button) >= times; }, bound);
}

int ClientWindow::count(Kind kind, unsigned button) {
    const auto matches = [&](const ClientEvent& event) {
        return event.kind == kind && event.button == button;
    };
    const auto& all = events();
    return static_cast<int>(std::count_if(all.begin(), all.end(), matches));
}

std::vector<KeyStroke> ClientWindow::strokes() {
    std::vector<KeyStroke> result;
    for (const ClientEvent& event : events()) {
        if (event.kind == Kind::keyPress && IsModifierKey(event.key) == 0) {
            result.push_back({event.key, event.state & modifierMask});
        }
    }
    return result;
}

std::vector<unsigned> ClientWindow::buttonsPressed() {
    std::vector<unsigned> result;
    for (const ClientEvent& event : events()) {
        if (event.kind == Kind::buttonPress) result.push_back(event.button);
    }
    return result;
}

Turn ClientWindow::scrolled() {
    Turn sum;
    for (const ClientEvent& event : events()) {
        sum.vertical += event.scrolled.vertical;
        sum.horizontal += event.scrolled.horizontal;
        if (event.kind != Kind::buttonPress || event.emulated || event.button < 4 || event.button > 7)
            continue;
        (event.button < 6 ? sum.vertical : sum.horizontal) += event.button % 2 == 0 ? 1 : -1;
    }
    return sum;
}

}  // namespace trelvan::desktop
