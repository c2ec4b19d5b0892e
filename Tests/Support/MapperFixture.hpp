#pragma once

#include "Core/ButtonMapper.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace trelvan::test {

/// A radial menu that remembers what it was asked to show.
class RememberingMenu final : public SmartButtonMenu {
  public:
    void show(const SmartButtonConfiguration& configuration) override { shown.push_back(configuration); }
    std::vector<SmartButtonConfiguration> shown;
};

/// A mapper on the simulated desktop over a profile that the test fills.
class MapperFixture : public testing::Test {
  protected:
    explicit MapperFixture(const ActionShortcuts& shortcuts = macShortcuts) : desktop(shortcuts) {
        mapper = std::make_shared<ButtonMapper>(
            ButtonMapper::Ports{desktop.inputState(), desktop.eventPoster(), desktop.backgroundQueue(),
                                desktop.mainQueue(), desktop.screens(), desktop.workspace(),
                                desktop.hotKeyTable(), desktop.systemViews(), desktop.scriptRunner(),
                                desktop.actionShortcuts(), desktop.sessionState()},
            [this] { return std::make_shared<const ProfileSnapshot>(profile); }, menu, desktop.logger);
    }

    void hotKey(int id, HotKeyEntry entry) { desktop.hotKeyEntries[id] = std::move(entry); }
    /// The key codes that went down at the HID tap, in order.
    [[nodiscard]] std::vector<int> keysDown() const {
        std::vector<int> result;
        for (const auto& key : desktop.all<trace::PostedKey>()) {
            if (key.down) result.push_back(key.keyCode);
        }
        return result;
    }

    ButtonMapping& map(std::int64_t number, ButtonAction action) {
        ButtonMapping mapping;
        mapping.buttonNumber = number;
        mapping.action() = action;
        profile.mappings.push_back(mapping);
        return profile.mappings.back();
    }

    /// Presses a button mapped to the action and lets the background work end.
    bool perform(ButtonAction action) {
        profile.mappings.clear();
        map(4, action);
        return press(4);
    }
    bool press(std::int64_t number, EventFlags flags = 0) {
        const bool handled = mapper->execute(number, flags);
        desktop.time.runUntilBackgroundIsEmpty();
        return handled;
    }

    /// Where and when keys were posted, one text each: "12.5 8 down 100000 @0" for 12.5 ms, key 8, flags in
    /// hexadecimal, tap location.
    [[nodiscard]] std::vector<std::string> keys() const {
        std::vector<std::string> result;
        for (const auto& entry : desktop.entries) {
            const auto* key = std::get_if<trace::PostedKey>(&entry.what);
            if (key == nullptr) continue;
            char text[80];
            std::snprintf(text, sizeof text, "%g %d %s %llX @%u", entry.at.count() * 1000, key->keyCode,
                          key->down ? "down" : "up", static_cast<unsigned long long>(key->flags),
                          static_cast<unsigned>(key->tap));
            result.emplace_back(text);
        }
        return result;
    }

    TestDesktop desktop;
    TrackballProfile profile;
    std::shared_ptr<RememberingMenu> menu = std::make_shared<RememberingMenu>();
    std::shared_ptr<ButtonMapper> mapper;
};

}  // namespace trelvan::test
