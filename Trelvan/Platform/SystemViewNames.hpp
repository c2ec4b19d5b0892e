#pragma once

#include "Platform/SystemViews.hpp"

#include <string_view>

namespace trelvan {

/// The view in the words of the log.
constexpr std::string_view logName(SystemView view) {
    switch (view) {
        case SystemView::missionControl:
            return "la vista de ventanas";
        case SystemView::appExpose:
            return "la vista de la aplicación";
        case SystemView::launchpad:
            return "el lanzador de aplicaciones";
        case SystemView::showDesktop:
            return "mostrar el escritorio";
        case SystemView::desktopLeft:
        case SystemView::desktopRight:
            return "cambiar de escritorio";
        case SystemView::screenshotArea:
        case SystemView::screenshotFull:
        case SystemView::screenshotTool:
            return "capturas de pantalla";
        case SystemView::emojiPanel:
            return "el panel de emojis";
        case SystemView::lockScreen:
            return "bloquear la pantalla";
    }
    return {};
}

}  // namespace trelvan
