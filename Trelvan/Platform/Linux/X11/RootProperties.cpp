#include "Platform/Linux/X11/RootProperties.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

#include <algorithm>
#include <memory>
#include <utility>

namespace trelvan {

namespace {

/// The 32-bit items of a property, which Xlib hands out as longs.
struct Items {
    std::unique_ptr<unsigned char, decltype(&XFree)> memory{nullptr, &XFree};
    unsigned long count = 0;

    /// The bytes of a text.
    std::string text;

    [[nodiscard]] unsigned long at(std::size_t index) const {
        return reinterpret_cast<const unsigned long*>(memory.get())[index];
    }
};

Items read(Display* display, Window window, Atom property) {
    Atom type = x11::none;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    constexpr long most = 1024;
    const int result = XGetWindowProperty(display, window, property, 0, most, x11::no, AnyPropertyType, &type,
                                          &format, &count, &left, &data);
    Items items;
    items.memory.reset(data);
    if (result == x11::success && format == 32) items.count = count;
    if (result == x11::success && format == 8) items.text.assign(reinterpret_cast<char*>(data), count);
    return items;
}

}  // namespace

std::optional<unsigned long> RootProperties::number(const char* property, std::size_t index) const {
    const auto items = read(connection_.display(), connection_.root(), connection_.atom(property));
    if (index >= items.count) return std::nullopt;
    return items.at(index);
}

std::vector<unsigned long> RootProperties::numbers(const char* property) const {
    const auto items = read(connection_.display(), connection_.root(), connection_.atom(property));
    std::vector<unsigned long> result;
    result.reserve(items.count);
    for (unsigned long index = 0; index < items.count; ++index) result.push_back(items.at(index));
    return result;
}

bool RootProperties::isSupported(const char* property) const {
    const Atom wanted = connection_.atom(property);
    const auto supported = numbers("_NET_SUPPORTED");
    return std::ranges::find(supported, wanted) != supported.end();
}

void RootProperties::request(const char* property, unsigned long value) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = connection_.root();
    event.xclient.message_type = connection_.atom(property);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(value);
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection_.display(), connection_.root(), x11::no,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(connection_.display());
}

namespace {

struct ClassNames {
    std::string instanceName;
    std::string className;
};

ClassNames classNames(Display* display, Window window) {
    XClassHint hint{};
    if (!XGetClassHint(display, window, &hint)) return {};
    ClassNames names{.instanceName = hint.res_name != nullptr ? hint.res_name : "",
                     .className = hint.res_class != nullptr ? hint.res_class : ""};
    if (hint.res_name != nullptr) XFree(hint.res_name);
    if (hint.res_class != nullptr) XFree(hint.res_class);
    return names;
}

}  // namespace

std::string RootProperties::applicationClass(unsigned long window) const {
    // The window may be gone by now.
    const XErrorScope scope(connection_.display());
    return classNames(connection_.display(), window).className;
}

WindowTraits RootProperties::traits(unsigned long window) const {
    Display* display = connection_.display();
    const XErrorScope scope(display);
    auto [instanceName, className] = classNames(display, window);
    WindowTraits result{.instanceName = std::move(instanceName), .className = std::move(className)};
    const auto process = read(display, window, connection_.atom("_NET_WM_PID"));
    if (process.count > 0) result.process = static_cast<long>(process.at(0));
    const Atom startupId = connection_.atom("_NET_STARTUP_ID");
    result.startupId = read(display, window, startupId).text;
    // Some toolkits name it on the leader of their windows only.
    const auto leader = read(display, window, connection_.atom("WM_CLIENT_LEADER"));
    if (result.startupId.empty() && leader.count > 0)
        result.startupId = read(display, leader.at(0), startupId).text;
    return result;
}

}  // namespace trelvan
