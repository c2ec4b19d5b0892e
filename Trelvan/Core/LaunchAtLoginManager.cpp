#include "Core/LaunchAtLoginManager.hpp"

namespace trelvan {

LaunchAtLoginManager::LaunchAtLoginManager(LoginItem& item, Logger& logger) : item_(item), logger_(logger) {
    refresh();
    watch_ = item_.watch([this] { refresh(); });
}

void LaunchAtLoginManager::toggle() {
    const auto error = isEnabled ? item_.unregisterItem() : item_.registerItem();
    if (error) logger_.error(InlineText("LaunchAtLogin: ", *error));
    refresh();
}

void LaunchAtLoginManager::refresh() {
    isEnabled = item_.status() == LoginItem::Status::enabled;
}

}  // namespace trelvan
