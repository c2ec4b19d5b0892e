#include "Platform/Linux/RootProperties.hpp"

#include "Platform/Linux/X11.hpp"
#include "Platform/Linux/XErrorScope.hpp"

#include <algorithm>
#include <memory>

namespace trelvan {

namespace {

/// The 32-bit items of a property, which Xlib hands out as longs.
struct Items {
    std::unique_ptr<unsigned char, decltype(&XFree)> memory{nullptr, &XFree};
    unsigned long count = 0;

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

std::string RootProperties::applicationClass(unsigned long window) const {
    // The window may be gone by now.
    const XErrorScope scope(connection_.display());
    XClassHint hint{};
    if (!XGetClassHint(connection_.display(), window, &hint)) return {};
    std::string name = hint.res_class != nullptr ? hint.res_class : "";
    if (hint.res_name != nullptr) XFree(hint.res_name);
    if (hint.res_class != nullptr) XFree(hint.res_class);
    return name;
}

}  // namespace trelvan
