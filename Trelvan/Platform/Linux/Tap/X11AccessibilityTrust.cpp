#include "Platform/Linux/Tap/X11AccessibilityTrust.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"

namespace trelvan {

bool X11AccessibilityTrust::isTrusted() {
    // An untrusted client (X SECURITY) has both extensions hidden from it.
    if (tap_.isDenied()) return false;
    const XErrorScope scope(connection_.display());
    int event = 0;
    int error = 0;
    int major = 0;
    int minor = 0;
    int opcode = 0;
    return XTestQueryExtension(connection_.display(), &event, &error, &major, &minor) != 0 &&
           XQueryExtension(connection_.display(), "XInputExtension", &opcode, &event, &error) != 0;
}

std::optional<AccessibilityTrust::Advice> X11AccessibilityTrust::advice() const {
    return Advice{
        "This X server lets Trelvan neither watch nor send input. Start Trelvan from your own desktop "
        "session, not through an untrusted connection.",
        "Este servidor X no deja a Trelvan ver ni enviar eventos. Inicia Trelvan desde tu propia sesión de "
        "escritorio, no por una conexión sin confianza."};
}

}  // namespace trelvan
