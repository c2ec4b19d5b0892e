#include "Platform/Linux/Shell/Accelerator.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <string>

namespace trelvan {

namespace {

struct ModifierName {
    std::string_view name;
    EventFlags flag;
};

constexpr std::array gtkModifiers{
    ModifierName{"shift", flag::shift},     ModifierName{"shft", flag::shift},
    ModifierName{"control", flag::control}, ModifierName{"ctrl", flag::control},
    ModifierName{"ctl", flag::control},     ModifierName{"primary", flag::control},
    ModifierName{"alt", flag::option},      ModifierName{"mod1", flag::option},
    ModifierName{"super", flag::command},   ModifierName{"mod4", flag::command},
};

constexpr std::array qtModifiers{
    ModifierName{"shift", flag::shift},
    ModifierName{"ctrl", flag::control},
    ModifierName{"alt", flag::option},
    ModifierName{"meta", flag::command},
};

struct KeyName {
    std::string_view name;
    unsigned long keysym;
};

/// Qt's names that are not the X server's own.
constexpr std::array qtKeys{
    KeyName{"pgup", XK_Page_Up},        KeyName{"pgdown", XK_Page_Down},
    KeyName{"del", XK_Delete},          KeyName{"ins", XK_Insert},
    KeyName{"esc", XK_Escape},          KeyName{"enter", XK_KP_Enter},
    KeyName{"backspace", XK_BackSpace}, KeyName{"space", XK_space},
    KeyName{"capslock", XK_Caps_Lock},  KeyName{"scrolllock", XK_Scroll_Lock},
    KeyName{"sysreq", XK_Sys_Req},      KeyName{"meta", XK_Super_L},
    KeyName{"ctrl", XK_Control_L},      KeyName{"alt", XK_Alt_L},
    KeyName{"shift", XK_Shift_L},
};

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return result;
}

template <std::size_t count>
std::optional<EventFlags> modifier(const std::array<ModifierName, count>& names, std::string_view name) {
    const auto* const found = std::ranges::find(names, lowered(name), &ModifierName::name);
    if (found == names.end()) return std::nullopt;
    return found->flag;
}

/// A key by the X server's name for it, or by the one sign that it types.
std::optional<unsigned long> keyNamed(const std::string& name) {
    constexpr std::string_view noKey[]{"none", "disabled", "nosymbol", "voidsymbol"};
    if (name.empty() || std::ranges::find(noKey, lowered(name)) != std::end(noKey)) return std::nullopt;
    if (name.size() == 1) return static_cast<unsigned char>(lowered(name).front());
    const unsigned long keysym = XStringToKeysym(name.c_str());
    return keysym != NoSymbol ? std::optional(keysym) : std::nullopt;
}

std::optional<unsigned long> qtKeyNamed(const std::string& name) {
    const auto* const found = std::ranges::find(qtKeys, lowered(name), &KeyName::name);
    return found != qtKeys.end() ? std::optional(found->keysym) : keyNamed(name);
}

}  // namespace

std::optional<Accelerator> gtkAccelerator(std::string_view text) {
    Accelerator result;
    text = trimmed(text);
    while (text.starts_with('<')) {
        const auto end = text.find('>');
        if (end == std::string_view::npos) return std::nullopt;
        const auto bit = modifier(gtkModifiers, text.substr(1, end - 1));
        if (!bit) return std::nullopt;
        result.flags |= *bit;
        text.remove_prefix(end + 1);
    }
    const auto keysym = keyNamed(std::string(text));
    if (!keysym) return std::nullopt;
    result.keysym = *keysym;
    return result;
}

std::optional<Accelerator> qtAccelerator(std::string_view text) {
    Accelerator result;
    text = trimmed(text);
    // The last plus may be the key itself.
    for (auto plus = text.find('+'); plus != std::string_view::npos && plus + 1 < text.size() && plus > 0;
         plus = text.find('+')) {
        const auto bit = modifier(qtModifiers, text.substr(0, plus));
        if (!bit) return std::nullopt;
        result.flags |= *bit;
        text.remove_prefix(plus + 1);
    }
    const auto keysym = qtKeyNamed(std::string(text));
    if (!keysym) return std::nullopt;
    result.keysym = *keysym;
    return result;
}

}  // namespace trelvan
