#include "UI/Models/MenuBarModel.hpp"

namespace trelvan {

std::string shortVersion(const BundleInfo& bundle) {
    return bundle.text("CFBundleShortVersionString").value_or("1.0");
}

MenuBarLabel menuBarLabel(bool isRunning, const BundleInfo& bundle) {
    return {.symbol = isRunning ? "computermouse.fill" : "computermouse", .text = "v" + shortVersion(bundle)};
}

std::vector<MenuEntry> menuEntries(const MenuState& state) {
    const auto text = [&state](std::string_view english, std::string_view spanish) {
        return std::string(localized(state.language, english, spanish));
    };
    std::vector<MenuEntry> entries;
    const auto add = [&entries](MenuCommand command, std::string label,
                                bool beginsGroup = false) -> MenuEntry& {
        return entries.emplace_back(MenuEntry{.command = command,
                                              .text = std::move(label),
                                              .isOn = std::nullopt,
                                              .beginsGroup = beginsGroup,
                                              .profile = std::nullopt});
    };
    add(MenuCommand::open, text("Open Trelvan", "Abrir Trelvan"));
    if (state.isRunning) {
        add(MenuCommand::stop, text("Stop monitor", "Detener monitor"), true);
        add(MenuCommand::pause, text("Pause for an hour", "Pausar una hora"));
    } else {
        const std::string until =
            state.pausedUntil ? text(" (paused until ", " (en pausa hasta las ") + *state.pausedUntil + ")"
                              : "";
        add(MenuCommand::start, text("Start monitor", "Iniciar monitor") + until, true);
    }
    bool isFirst = true;
    for (const auto& [id, name] : state.profiles) {
        MenuEntry& entry = add(MenuCommand::profile, name, std::exchange(isFirst, false));
        entry.isOn = id == state.activeProfile;
        entry.profile = id;
    }
    add(MenuCommand::keepAwake, "Keep Awake", true).isOn = state.keepsAwake;
    add(MenuCommand::quit, text("Quit Trelvan", "Salir de Trelvan"), true);
    return entries;
}

}  // namespace trelvan
