#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/DesktopShortcuts.hpp"
#include "Utilities/Text.hpp"

#include <QXmlStreamReader>
#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace trelvan {

namespace {

/// What a shortcut does: a function of the window manager by its name, or a command. Of several that serve,
/// the one further up counts.
struct Meaning {
    int id;
    std::string_view text;
};

constexpr std::array windowFunctions{
    Meaning{hotkey::showDesktop, "show_desktop_key"},    Meaning{hotkey::desktopLeft, "left_workspace_key"},
    Meaning{hotkey::desktopLeft, "prev_workspace_key"},  Meaning{hotkey::desktopRight, "right_workspace_key"},
    Meaning{hotkey::desktopRight, "next_workspace_key"},
};

constexpr std::array commands{
    Meaning{hotkey::missionControl, "xfdashboard"},
    Meaning{hotkey::missionControl, "skippy-xd"},
    Meaning{hotkey::launchpad, "xfce4-popup-whiskermenu"},
    Meaning{hotkey::launchpad, "xfce4-appfinder"},
    Meaning{hotkey::launchpad, "xfce4-popup-applicationsmenu"},
    Meaning{hotkey::screenshotFull, "xfce4-screenshooter -f"},
    Meaning{hotkey::screenshotFull, "xfce4-screenshooter --fullscreen"},
    Meaning{hotkey::screenshotArea, "xfce4-screenshooter -r"},
    Meaning{hotkey::screenshotArea, "xfce4-screenshooter --region"},
    Meaning{hotkey::screenshotTool, "xfce4-screenshooter"},
    Meaning{hotkey::lockScreen, "xflock4"},
    Meaning{hotkey::lockScreen, "xfce4-screensaver-command --lock"},
};

struct Binding {
    std::string accelerator;
    std::string action;
};

/// The shortcuts of one half of the channel, as delivered and as the user has them.
struct Half {
    std::vector<Binding> delivered;
    std::vector<Binding> custom;
    /// The user's stand instead of the delivered ones, not beside them.
    bool isOverridden = false;

    [[nodiscard]] const std::vector<Binding>& inForce() const {
        return isOverridden || !custom.empty() ? custom : delivered;
    }
};

struct Channel {
    Half commands;
    Half windowManager;
};

std::string attribute(const QXmlStreamReader& reader, const char* name) {
    return reader.attributes().value(QLatin1String(name)).toString().toStdString();
}

Channel parse(std::string_view xml) {
    Channel channel;
    QXmlStreamReader reader(QByteArray(xml.data(), static_cast<qsizetype>(xml.size())));
    std::vector<std::string> path;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::EndElement && !path.empty()) path.pop_back();
        if (token != QXmlStreamReader::StartElement) continue;
        path.push_back(attribute(reader, "name"));
        if (path.size() != 4) continue;
        // channel, half, state, accelerator
        Half* half = path[1] == "commands" ? &channel.commands
                     : path[1] == "xfwm4"  ? &channel.windowManager
                                           : nullptr;
        if (half == nullptr || (path[2] != "default" && path[2] != "custom")) continue;
        const auto value = attribute(reader, "value");
        if (path[3] == "override") {
            half->isOverridden = value == "true";
        } else if (attribute(reader, "type") == "string") {
            (path[2] == "custom" ? half->custom : half->delivered).push_back({path[3], value});
        }
    }
    return channel;
}

/// Whether a command line is these words, wherever the program lies. Further arguments would make it
/// something else, as "--collapsed" turns the application finder into a command line.
bool isCommand(std::string_view line, std::string_view words) {
    line = trimmed(line);
    const auto program = line.substr(0, line.find(' '));
    if (const auto slash = program.rfind('/'); slash != std::string_view::npos) line.remove_prefix(slash + 1);
    return line == words;
}

template <typename Matches>
void add(ShortcutTable& table, std::span<const Meaning> meanings, const std::vector<Binding>& bindings,
         Matches matches) {
    for (const auto& meaning : meanings) {
        for (const auto& binding : bindings) {
            if (!matches(binding.action, meaning.text)) continue;
            if (const auto accelerator = gtkAccelerator(binding.accelerator))
                table.emplace(meaning.id, *accelerator);
        }
    }
}

}  // namespace

ShortcutTable readXfceShortcuts(std::string_view xml) {
    const Channel channel = parse(xml);
    ShortcutTable table;
    add(table, windowFunctions, channel.windowManager.inForce(),
        [](std::string_view action, std::string_view text) { return action == text; });
    add(table, commands, channel.commands.inForce(), isCommand);
    return table;
}

}  // namespace trelvan
