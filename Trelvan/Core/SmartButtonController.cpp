#include "Core/SmartButtonController.hpp"

#include "Utilities/Text.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr std::string_view applicationsFolder = "/Applications";

}  // namespace

SmartButtonController::SmartButtonController(const Ports& ports, SmartButtonPanels& panels, Logger& logger)
    : ports_(ports),
      panels_(panels),
      logger_(logger),
      sessionObserver_(ports_.session.observe([this](bool usable) {
          if (!usable) closePanel();
      })) {}

void SmartButtonController::show(const SmartButtonConfiguration& configuration) {
    if (configuration.apps.empty()) {
        logger_.warning("Smart Button no tiene aplicaciones configuradas");
        return;
    }
    if (!ports_.session.isUsable()) return;
    closePanel();
    const BottomLeftPoint pointer = ports_.screens.pointerLocation();
    const auto screen = screenUnder(pointer);
    if (!screen) return;
    panel_ = panels_.showOverlay(viewOf(configuration, pointer, *screen));
    isShown = panel_ != nullptr;
}

std::optional<BottomLeftRect> SmartButtonController::screenUnder(BottomLeftPoint pointer) const {
    const auto screens = ports_.screens.frames();
    if (screens.empty()) return std::nullopt;
    const auto found = std::ranges::find_if(
        screens, [pointer](const BottomLeftRect& screen) { return screen.contains(pointer); });
    return found != screens.end() ? *found : screens.front();
}

SmartButtonRadialView SmartButtonController::viewOf(const SmartButtonConfiguration& configuration,
                                                    BottomLeftPoint pointer, const BottomLeftRect& screen) {
    return {.apps = configuration.apps,
            .pointerLocation = pointer,
            .screenFrame = screen,
            .onLaunch = lifetime_.whileAlive([this](const SmartButtonApp& app) { launch(app); }),
            .onEdit = lifetime_.whileAlive([this] { openEditor(); }),
            .onOpenApplications = lifetime_.whileAlive([this] { openApplications(); }),
            .onDismiss = lifetime_.whileAlive([this] { closePanel(); })};
}

void SmartButtonController::launch(const SmartButtonApp& app) {
    // The caller's entry may go with its panel.
    const SmartButtonApp chosen = app;
    const bool isApplication = chosen.kind == SmartButtonItemKind::application;
    const bool isMissing = isApplication && !ports_.workspace.exists(chosen.path);
    if (isMissing) {
        logger_.warning(InlineText("Smart Button: no se encontró ", chosen.path));
    } else if (isApplication) {
        ports_.workspace.openApplication(chosen.path);
        logger_.info(InlineText("Smart Button abrió ", chosen.name));
    } else {
        sendShortcut(chosen);
    }
    closePanel();
    if (isMissing && onMissing) onMissing(chosen);
}

void SmartButtonController::sendShortcut(const SmartButtonApp& app) {
    if (app.shortcut.isEmpty()) {
        logger_.warning("Smart Button: shortcut vacío");
        return;
    }
    // The modifiers go along as flags; no keys of their own are pressed for them.
    ports_.background.async(
        [keyCode = app.shortcut.keyCode, flags = app.shortcut.modifiersRawValue, &poster = ports_.poster] {
            const auto make = [&](bool down) {
                return poster.makeKey(EventSourceState::hidSystem, keyCode, down, flags);
            };
            for (const auto& event : {make(true), make(false)}) {
                if (event) poster.post(*event, TapLocation::hid);
            }
        });
    logger_.info(InlineText("Smart Button ejecutó shortcut ", app.name));
}

void SmartButtonController::openApplications() {
    ports_.workspace.openFolder(applicationsFolder);
    closePanel();
}

void SmartButtonController::openEditor() {
    closePanel();
    panels_.activate();
    if (!editorContentProvider) return;
    if (!editorPanel_) editorPanel_ = panels_.makeEditor();
    editorPanel_->setContent(editorContentProvider());
    editorPanel_->show();
    ports_.mainQueue.async(
        lifetime_.whileAlive([this] { openSmartButtonSettings = openSmartButtonSettings.get() + 1; }));
}

void SmartButtonController::closePanel() {
    // First out of the way: taking the window down may call back.
    if (const auto closing = std::exchange(panel_, nullptr)) isShown = false;
}

}  // namespace trelvan
