#include "UI/Panels/PanelHost.hpp"
#include "UI/Panels/SystemPanel.hpp"

namespace trelvan {

PanelFactories standardPanels() {
    return {{SettingsTab::settings, [](PanelHost& host) { return std::make_unique<SystemPanel>(host); }}};
}

}  // namespace trelvan
