#include "Tools/Simulate/SimulatedMenu.hpp"

#include "Tools/Simulate/TraceJson.hpp"

#include <cmath>
#include <utility>

namespace trelvan {

namespace {

using Json = TraceJson;

/// Without the noise of the sine.
Json plain(double coordinate) {
    return plainNumber(std::round(coordinate * 1e9) / 1e9);
}

Json jsonOf(const trace::Menu::Entry& entry) {
    return {{"name", entry.name}, {"x", plain(entry.centre.x)}, {"y", plain(entry.centre.y)}};
}

Json entriesOf(const trace::Menu& menu) {
    Json list = Json::array();
    for (const auto& entry : menu.entries) list.push_back(jsonOf(entry));
    return list;
}

}  // namespace

/// The window over the whole screen.
class SimulatedMenu::Overlay final : public Panel {
  public:
    Overlay(SimulatedDesktop& desktop, std::shared_ptr<const SmartButtonRadialView> view)
        : desktop_(desktop), view_(std::move(view)) {
        // A window here is reported as screens are, which is how macOS does it.
        const BottomLeftRect& screen = view_->screenFrame;
        desktop_.overlay = OwnWindow{
            .frame = {screen.x, screen.y, screen.width, screen.height}, .visible = true, .alpha = 1};
    }
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;
    ~Overlay() override {
        desktop_.overlay.reset();
        desktop_.tell(trace::Menu{});
    }

  private:
    SimulatedDesktop& desktop_;
    std::shared_ptr<const SmartButtonRadialView> view_;
};

trace::Menu SimulatedMenu::state() const {
    const auto view = view_.lock();
    if (!view) return {};
    const auto layout = view->layout();
    trace::Menu menu{.shown = true, .centre = layout.centre, .entries = {}};
    for (std::size_t index = 0; index < layout.entries.size(); ++index)
        menu.entries.push_back({view->apps[index].name, layout.entries[index]});
    return menu;
}

std::unique_ptr<SmartButtonPanels::Panel> SimulatedMenu::showOverlay(SmartButtonRadialView view) {
    auto kept = std::make_shared<const SmartButtonRadialView>(std::move(view));
    view_ = kept;
    desktop_.tell(state());
    return std::make_unique<Overlay>(desktop_, std::move(kept));
}

void SimulatedMenu::activate() {
    const auto identifier = desktop_.bundle.find("CFBundleIdentifier");
    if (identifier != desktop_.bundle.end()) desktop_.frontmost = identifier->second;
}

std::unique_ptr<SmartButtonPanels::Editor> SimulatedMenu::makeEditor() {
    class Window final : public Editor {
      public:
        void setContent(std::unique_ptr<Content> content) override { content_ = std::move(content); }
        void show() override {}

      private:
        std::unique_ptr<Content> content_;
    };
    return std::make_unique<Window>();
}

std::string menuCentre(const trace::Menu& menu) {
    return traceText(Json::array({plain(menu.centre.x), plain(menu.centre.y)}));
}

std::string menuEntries(const trace::Menu& menu) {
    return traceText(entriesOf(menu));
}

std::string menuState(const trace::Menu& menu) {
    if (!menu.shown) return traceText({{"shown", false}});
    return traceText({{"shown", true},
                      {"center", Json::array({plain(menu.centre.x), plain(menu.centre.y)})},
                      {"entries", entriesOf(menu)}});
}

}  // namespace trelvan
