#include "Platform/Linux/XErrorScope.hpp"

#include "Platform/Linux/LastWish.hpp"
#include "Platform/Linux/X11.hpp"
#include "Utilities/Logger.hpp"

#include <unistd.h>

#include <array>
#include <string_view>

namespace trelvan {

namespace {

thread_local XErrorScope* innermost = nullptr;

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
        AppLogger.warning(ShortText("Error de X: ", std::string_view(name.data()), " (petición ",
                                    int{event->request_code}, ".", int{event->minor_code}, ")"));
        return 0;
    }

    [[noreturn]] static int onConnectionLost(Display* display) {
        const ShortText line("Trelvan: se perdió la conexión con el servidor X ", DisplayString(display),
                             "\n");
        const auto text = line.view();
        [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
        performLastWish();
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

bool XErrorScope::failed() {
    XSync(display_, x11::no);
    return code_ != 0;
}

void XErrorScope::install() {
    XSetErrorHandler(&XErrorRouting::onError);
    XSetIOErrorHandler(&XErrorRouting::onConnectionLost);
}

}  // namespace trelvan
