#include "Core/MissingViewNotifier.hpp"

#include <string>

namespace trelvan {

namespace {

struct ViewName {
    std::string_view english;
    std::string_view spanish;
};

/// Empty for what keys can always be sent for.
ViewName nameOf(SystemView view) {
    switch (view) {
        case SystemView::missionControl:
            return {"view of all windows", "una vista de todas las ventanas"};
        case SystemView::appExpose:
            return {"view of an application's windows", "una vista de las ventanas de una aplicación"};
        case SystemView::launchpad:
            return {"application launcher", "un lanzador de aplicaciones"};
        case SystemView::showDesktop:
            return {"way to show the desktop", "una forma de mostrar el escritorio"};
        case SystemView::desktopLeft:
        case SystemView::desktopRight:
            return {"move between desktops", "el cambio de un escritorio a otro"};
        case SystemView::screenshotArea:
        case SystemView::screenshotFull:
        case SystemView::screenshotTool:
        case SystemView::emojiPanel:
        case SystemView::lockScreen:
            return {};
    }
    return {};
}

}  // namespace

MissingViewNotifier::MissingViewNotifier(SystemViews& views, NotificationPoster& poster)
    : views_(views), poster_(poster) {
    views_.setMissingObserver([this](const MissingView& missing) { announce(missing); });
}

MissingViewNotifier::~MissingViewNotifier() {
    views_.setMissingObserver(nullptr);
}

void MissingViewNotifier::announce(const MissingView& missing) {
    const auto name = nameOf(missing.view);
    if (name.english.empty() || !announced_.insert(name.english).second) return;
    auto english = "This desktop offers no " + std::string(name.english) + ".";
    auto spanish = "Este escritorio no ofrece " + std::string(name.spanish) + ".";
    if (!missing.program.empty()) {
        english += " It will once " + std::string(missing.program) + " is installed.";
        spanish += " Lo hará cuando esté instalado " + std::string(missing.program) + ".";
    }
    // Of its own kind for each view: what to install for one is still true when another is missing too.
    poster_.announce("missing-view " + std::string(name.english), english, spanish);
}

}  // namespace trelvan
