#include "Platform/Linux/X11InputBackend.hpp"

#include "Utilities/Logger.hpp"

#include <utility>

namespace trelvan {

X11InputBackend::X11InputBackend(XEventPump& pump, std::unique_ptr<XConnection> posting, PressedState& page,
                                 const EventOrigin& origin, Timers& timers, InBackground inBackground)
    : modifiers_(pump),
      tap_(pump, modifiers_, activity_, timers, page, origin),
      menuKeys_(page),
      poster_(std::move(posting), tap_.pipeline(), menuKeys_, page, origin),
      inputState_(pump, modifiers_, activity_, timers, poster_),
      escapeHold_(pump, timers, [this] { escape(); }),
      trust_(pump.connection(), tap_),
      keyMonitors_(pump, modifiers_),
      menuInput_(pump, menuKeys_) {
    tap_.onRunaway = [this, inBackground = std::move(inBackground)] {
        inBackground([this] { poster_.releaseAll(); });
    };
}

void X11InputBackend::escape() {
    tap_.yield(!tap_.isYielding());
    AppLogger.warning(tap_.isYielding() ? "Escape mantenido cinco segundos: los dispositivos quedan libres "
                                          "hasta que se repita"
                                        : "Escape mantenido cinco segundos: se retoman los dispositivos");
}

}  // namespace trelvan
