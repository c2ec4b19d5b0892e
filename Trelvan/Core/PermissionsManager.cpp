#include "Core/PermissionsManager.hpp"

namespace trelvan {

PermissionsManager::PermissionsManager(AccessibilityTrust& trust, ScriptRunner& scripts, Logger& logger)
    : trust_(trust), scripts_(scripts), logger_(logger) {
    refresh();
}

void PermissionsManager::refresh() {
    const bool granted = trust_.isTrusted();
    accessibilityGranted = granted;
    if (lastLoggedAccessibilityGranted_ == granted) return;
    logger_.info(InlineText("Accesibilidad: ", granted ? "concedida ✅" : "denegada ❌"));
    lastLoggedAccessibilityGranted_ = granted;
}

void PermissionsManager::requestIfNeeded() {
    accessibilityGranted = trust_.requestTrust();
    logger_.info(
        InlineText("Permiso solicitado. Resultado: ", accessibilityGranted.get() ? "true" : "false"));
}

void PermissionsManager::requestAutomationPermissionIfNeeded() {
    const auto result = scripts_.run("tell application \"System Events\" to get name of first process");
    switch (result.status) {
        case ScriptResult::Status::notCreated:
            return;
        case ScriptResult::Status::ran:
            logger_.info("Automatización con System Events disponible ✅");
            return;
        case ScriptResult::Status::failed:
            logger_.warning(InlineText("Automatización no concedida todavía: ", result.error));
            return;
    }
}

}  // namespace trelvan
