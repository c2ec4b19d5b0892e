#include "Platform/Linux/X11/XErrorScope.hpp"

#include "Platform/Linux/X11/ConnectionLossHook.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Text.hpp"

#include <unistd.h>

#include <array>
#include <atomic>
#include <string>
#include <string_view>

namespace trelvan {

namespace {

/// Requests below this are the protocol's own.
constexpr int firstExtension = 128;

thread_local XErrorScope* innermost = nullptr;

/// By major opcode; none where nobody has asked for the extension.
std::array<std::atomic<const char*>, 256> extensions{};

/// "X_GetProperty", or "XInputExtension 51". The handler of an error may not ask the server.
InlineText requestName(Display* display, const XErrorEvent& event) {
    if (event.request_code >= firstExtension) {
        const char* extension = extensions[event.request_code].load();
        const int request = event.minor_code;
        if (extension != nullptr) return InlineText(std::string_view(extension), " ", request);
        return InlineText("extensión ", int{event.request_code}, " ", request);
    }
    const InlineText number(int{event.request_code});
    std::array<char, 64> name{};
    XGetErrorDatabaseText(display, "XRequest", std::string(number.view()).c_str(),
                          std::string(number.view()).c_str(), name.data(), static_cast<int>(name.size()));
    return InlineText(std::string_view(name.data()));
}

}  // namespace

/// The process-wide handlers, with access to the scopes.
struct XErrorRouting {
    static int onError(Display* display, XErrorEvent* event) {
        for (auto* scope = innermost; scope != nullptr; scope = scope->outer_) {
            if (scope->display_ != display || event->serial < scope->firstSerial_) continue;
            if (scope->code_ == 0) scope->code_ = event->error_code;
            return 0;
        }
        std::array<char, 128> name{};
        XGetErrorText(display, event->error_code, name.data(), static_cast<int>(name.size()));
        AppLogger.warning(InlineText("Error de X: ", std::string_view(name.data()), " (petición ",
                                     requestName(display, *event).view(), ")"));
        return 0;
    }

    [[noreturn]] static int onConnectionLost(Display* display) {
        reportConnectionLost(DisplayString(display));
        runConnectionLossHook();
        _exit(1);
    }
};

XErrorScope::XErrorScope(_XDisplay* display)
    : display_(display), outer_(innermost), firstSerial_(NextRequest(display)) {
    innermost = this;
}

XErrorScope::~XErrorScope() {
    XSync(display_, x11::no);
    innermost = outer_;
}

int XErrorScope::error() {
    XSync(display_, x11::no);
    return code_;
}

void XErrorScope::nameExtension(int majorOpcode, const char* name) {
    if (majorOpcode >= firstExtension && majorOpcode < 256)
        extensions[static_cast<std::size_t>(majorOpcode)].store(name);
}

void reportConnectionLost(std::string_view display) {
    static std::atomic<bool> reported{false};
    if (reported.exchange(true)) return;
    const InlineText line("trelvan: the connection to the X server ", display,
                          " is lost; se perdió la conexión con el servidor X ", display, "\n");
    const auto text = line.view();
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
}

void XErrorScope::install() {
    XSetErrorHandler(&XErrorRouting::onError);
    XSetIOErrorHandler(&XErrorRouting::onConnectionLost);
}

}  // namespace trelvan
