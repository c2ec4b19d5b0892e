#pragma once

#include "Core/ButtonMapper.hpp"
#include "Core/PermissionsManager.hpp"
#include "Support/SequentialUuids.hpp"
#include "Support/TestDesktop.hpp"
#include "UI/Models/ButtonsScrollModel.hpp"
#include "UI/Models/FunctionSlots.hpp"

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace trelvan::test {

/// The editor's model over real services on the simulated desktop.
class EditorFixture : public testing::Test {
  protected:
    explicit EditorFixture(const ActionShortcuts& shortcuts = linuxShortcuts)
        : desktop(shortcuts),
          profiles(desktop.userDefaults(), desktop.logger, sequentialUuids()),
          permissions(desktop.accessibilityTrust(), desktop.scriptRunner(), desktop.logger),
          monitor(std::make_shared<EventMonitor>(
              EventMonitor::Ports{desktop.eventTap(), desktop.eventPoster(), desktop.screens(),
                                  desktop.userDefaults(), desktop.mainQueue(), desktop.clock(),
                                  desktop.sessionState()},
              [this]() -> PermissionsManager& { return permissions; }, desktop.logger)),
          mapper(std::make_shared<ButtonMapper>(
              ButtonMapper::Ports{desktop.inputState(), desktop.eventPoster(), desktop.backgroundQueue(),
                                  desktop.mainQueue(), desktop.screens(), desktop.workspace(),
                                  desktop.hotKeyTable(), desktop.systemViews(), desktop.scriptRunner(),
                                  desktop.actionShortcuts(), desktop.sessionState()},
              [this] { return profiles.activeSnapshot(); }, std::weak_ptr<SmartButtonMenu>(),
              desktop.logger)) {
        monitor->onButtonEvent = [this](std::int64_t number, EventFlags flags) {
            return mapper->execute(number, flags);
        };
        monitor->start();
        desktop.time.runDue();
        desktop.entries.clear();
    }
    ~EditorFixture() override { monitor->stop(); }

    /// The services as the panel gets them.
    ButtonsScrollServices services() {
        return {.profiles = profiles,
                .monitor = *monitor,
                .clock = desktop.clock(),
                .timers = desktop.timers(),
                .mainQueue = desktop.mainQueue(),
                .keyMonitors = desktop.keyMonitors(),
                .input = desktop.inputState(),
                .screens = desktop.screens(),
                .hotKeys = desktop.hotKeyTable(),
                .shortcuts = desktop.actionShortcuts(),
                .logger = desktop.logger,
                .perform = [this](const ButtonMapping& mapping, FunctionSlot slot) {
                    return mapper->perform(mapping, slot);
                }};
    }
    /// Opens the editor.
    ButtonsScrollModel& open() {
        model = std::make_unique<ButtonsScrollModel>(services());
        model->onRows = [this] { ++rowsTold; };
        model->onReveal = [this](const Uuid& id) { revealed.push_back(id); };
        return *model;
    }
    void runDue() { desktop.time.runDue(); }
    void runFor(double seconds) { desktop.time.runFor(Seconds{seconds}); }

    TapAnswer send(EventType type, std::int64_t number, EventFlags flags = 0) {
        TapEvent event{.type = type, .flags = flags, .buttonNumber = number};
        event.location = desktop.pointer;
        const auto answer = desktop.send(event);
        runDue();
        return answer;
    }
    TapAnswer press(std::int64_t number, EventFlags flags = 0) {
        return send(EventType::otherMouseDown, number, flags);
    }
    TapAnswer release(std::int64_t number) { return send(EventType::otherMouseUp, number); }
    TapAnswer turn(std::int64_t delta) {
        TapEvent event{.type = EventType::scrollWheel, .scrollDeltaAxis1 = delta};
        event.location = desktop.pointer;
        const auto answer = desktop.send(event);
        runDue();
        return answer;
    }

    [[nodiscard]] Uuid idOf(std::int64_t number) const {
        for (const auto& mapping : profiles.activeProfile().mappings) {
            if (mapping.buttonNumber == number) return mapping.id;
        }
        ADD_FAILURE() << "no mapping of " << number;
        return {};
    }
    [[nodiscard]] const ButtonMapping& mappingOf(std::int64_t number) const {
        for (const auto& mapping : profiles.activeProfile().mappings) {
            if (mapping.buttonNumber == number) return mapping;
        }
        throw std::runtime_error("no such mapping");
    }
    [[nodiscard]] std::vector<std::int64_t> numbers() const {
        std::vector<std::int64_t> result;
        for (const auto& mapping : profiles.activeProfile().mappings) result.push_back(mapping.buttonNumber);
        return result;
    }
    [[nodiscard]] MappingRow rowOf(std::int64_t number, AppLanguage language = AppLanguage::english) const {
        for (auto& row : model->rows(language)) {
            if (row.buttonNumber == number) return row;
        }
        throw std::runtime_error("no such row");
    }

    TestDesktop desktop;
    ProfileManager profiles;
    PermissionsManager permissions;
    std::shared_ptr<EventMonitor> monitor;
    std::shared_ptr<ButtonMapper> mapper;
    std::unique_ptr<ButtonsScrollModel> model;
    int rowsTold = 0;
    std::vector<Uuid> revealed;
};

}  // namespace trelvan::test
