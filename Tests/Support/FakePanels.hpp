#pragma once

#include "Core/SmartButtonPanels.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace trelvan::test {

/// Remembers what windows of the radial menu there are and were.
class FakePanels final : public SmartButtonPanels {
  public:
    struct Overlay final : Panel {
        Overlay(FakePanels& owner, SmartButtonRadialView view) : panels(owner), shown(std::move(view)) {
            panels.open.push_back(this);
        }
        ~Overlay() override { std::erase(panels.open, this); }
        FakePanels& panels;
        SmartButtonRadialView shown;
    };
    struct EditorWindow final : Editor {
        explicit EditorWindow(FakePanels& owner) : panels(owner) {}
        void setContent(std::unique_ptr<Content> given) override { panels.content = std::move(given); }
        void show() override { ++panels.editorsShown; }
        FakePanels& panels;
    };

    std::unique_ptr<Panel> showOverlay(SmartButtonRadialView view) override {
        ++overlaysShown;
        return std::make_unique<Overlay>(*this, std::move(view));
    }
    void activate() override { ++activations; }
    std::unique_ptr<Editor> makeEditor() override {
        ++editorsMade;
        return std::make_unique<EditorWindow>(*this);
    }

    /// The view of the only overlay that is open. A copy: what is called may take the overlay away.
    [[nodiscard]] SmartButtonRadialView view() const { return open.at(0)->shown; }

    std::vector<Overlay*> open;
    std::unique_ptr<Content> content;
    int overlaysShown = 0;
    int activations = 0;
    int editorsMade = 0;
    int editorsShown = 0;
};

}  // namespace trelvan::test
