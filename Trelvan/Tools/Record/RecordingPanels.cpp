#include "Tools/Record/RecordingPanels.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

std::unique_ptr<SmartButtonPanels::Panel> RecordingPanels::showOverlay(SmartButtonRadialView view) {
    // Written before it is done: what is done takes the panel away, and these functions with it.
    const auto recorded = [this](std::string_view operation, std::function<void()> original) {
        return [&recorder = recorder_, operation, original = std::move(original)] {
            recorder.writeCall(operation);
            original();
        };
    };
    view.onEdit = recorded("menuEdit", std::move(view.onEdit));
    view.onOpenApplications = recorded("menuApplications", std::move(view.onOpenApplications));
    view.onDismiss = recorded("menuDismiss", std::move(view.onDismiss));
    view.onLaunch = [&recorder = recorder_, apps = view.apps,
                     original = std::move(view.onLaunch)](const SmartButtonApp& app) {
        const auto place = std::ranges::find(apps, app);
        if (place != apps.end()) recorder.writeCall("chooseEntry", place - apps.begin());
        original(app);
    };
    return panels_.showOverlay(std::move(view));
}

}  // namespace trelvan
