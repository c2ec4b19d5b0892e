#include "Core/Settings/SettingsTransfer.hpp"
#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace trelvan {
namespace {

struct NumberKey {
    const char* key;
    double initial;
    double minimum;
    double maximum;
};

/// Every stored number that a service loads.
constexpr NumberKey numberKeys[]{{"trackball_scroll_speed_vertical", 1.0, 0.2, 3.0},
                                 {"trackball_scroll_speed_horizontal", 1.0, 0.2, 3.0},
                                 {"trackball_mouse_speed", 1.0, 0.5, 1.4},
                                 {"trackball_mouse_acceleration", 0.6, 0.0, 1.0},
                                 {"keep_awake_idle_threshold_minutes", 3.0, 1.0, 120.0},
                                 {"keep_awake_move_every_minutes", 1.0, 1.0, 60.0}};

using Real = std::numeric_limits<double>;

std::vector<DefaultsValue> hostileValues() {
    return {Real::quiet_NaN(),
            -Real::quiet_NaN(),
            Real::infinity(),
            -Real::infinity(),
            1e308,
            -1e308,
            0.0,
            -0.0,
            Real::denorm_min(),
            1e19,
            -1e19,
            std::numeric_limits<std::int64_t>::max(),
            std::numeric_limits<std::int64_t>::min(),
            std::string("NaN"),
            std::string("1e308"),
            std::string(),
            true,
            false,
            Data{"1"}};
}

/// The program on a simulated desktop with settings that somebody damaged.
class HostileSettingsTest : public testing::Test {
  protected:
    /// One event of each type that the tap sees, with the largest deltas that devices have.
    void sendEvents() {
        constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
        for (const std::int64_t delta : {std::int64_t{1}, std::int64_t{-40}, largest, -largest}) {
            for (const auto type :
                 {EventType::mouseMoved, EventType::leftMouseDragged, EventType::rightMouseDragged,
                  EventType::otherMouseDragged, EventType::leftMouseDown, EventType::rightMouseDown,
                  EventType::otherMouseDown, EventType::otherMouseUp, EventType::scrollWheel}) {
                desktop.send({.type = type,
                              .location = desktop.pointer,
                              .buttonNumber = 5,
                              .deltaX = delta,
                              .deltaY = -delta,
                              .scrollDeltaAxis1 = delta,
                              .scrollDeltaAxis2 = delta});
                desktop.time.runDue();
            }
        }
        // Half an hour, so that Keep Awake counts, nudges and waits.
        desktop.time.runFor(Seconds{1800});
    }

    test::TestDesktop desktop;
    test::FakePanels panels;
};

TEST_F(HostileSettingsTest, AnyValueUnderANumbersKey_LeavesTheProgramWithANumberInRange) {
    for (const auto& number : numberKeys) {
        for (const auto& value : hostileValues()) {
            SCOPED_TRACE(std::string(number.key) + ", kind " + std::to_string(value.index()));
            desktop.defaults.clear();
            desktop.defaults["keep_awake_enabled"] = true;
            // The pointer is shaped on every pipeline.
            desktop.defaults["trackball_mouse_speed"] = 1.3;
            desktop.defaults["trackball_horizontal_scroll_enabled"] = true;
            desktop.defaults[number.key] = value;
            TrelvanApp app(desktop, panels, desktop.logger);
            app.appear();
            desktop.time.runDue();
            const std::map<std::string, double> inForce{
                {"trackball_scroll_speed_vertical", app.eventMonitor->scrollSpeedVertical},
                {"trackball_scroll_speed_horizontal", app.eventMonitor->scrollSpeedHorizontal},
                {"trackball_mouse_speed", app.eventMonitor->mouseSpeed},
                {"trackball_mouse_acceleration", app.eventMonitor->mouseAcceleration},
                {"keep_awake_idle_threshold_minutes", app.keepAwakeManager.idleThresholdMinutes},
                {"keep_awake_move_every_minutes", app.keepAwakeManager.moveEveryMinutes}};
            const double taken = inForce.at(number.key);
            EXPECT_TRUE(taken >= number.minimum && taken <= number.maximum) << taken;
            const auto* stored = std::get_if<double>(&value);
            if (stored != nullptr && std::isnan(*stored)) {
                EXPECT_EQ(taken, number.initial);
            }
            sendEvents();
        }
    }
}

TEST_F(HostileSettingsTest, NotANumberUnderTheSpeedsKey_IsNotWrittenOver) {
    desktop.defaults["trackball_mouse_speed"] = Real::quiet_NaN();
    const TrelvanApp app(desktop, panels, desktop.logger);
    EXPECT_TRUE(std::isnan(std::get<double>(desktop.defaults.at("trackball_mouse_speed"))));
}

TEST_F(HostileSettingsTest, AnyNumberOfABackup_IsTakenInRangeOrNotAtAll) {
    for (const auto& row : setting::all) {
        if (!row.isInBackup() || row.kind != SettingKind::number) continue;
        for (const auto& value : hostileValues()) {
            const auto* number = std::get_if<double>(&value);
            if (number == nullptr) continue;
            SCOPED_TRACE(*number);
            desktop.defaults.clear();
            TrelvanApp app(desktop, panels, desktop.logger);
            app.appear();
            desktop.time.runDue();
            SettingsTransfer transfer{app.settings};
            auto settings = transfer.current();
            settings.set(setting::row("mouseSpeed"), 1.3);
            settings.set(setting::row("horizontalScrollEnabled"), true);
            settings.set(row, *number);
            transfer.apply(settings);
            const double taken = std::get<double>(transfer.current()[row]);
            EXPECT_TRUE(taken >= row.minimum && taken <= row.maximum) << taken;
            sendEvents();
        }
    }
}

TEST_F(HostileSettingsTest, KeepAwakeMinutesThatAreNoNumber_ChangeAndStoreNothing) {
    TrelvanApp app(desktop, panels, desktop.logger);
    app.keepAwakeManager.idleThresholdMinutes = Real::quiet_NaN();
    app.keepAwakeManager.moveEveryMinutes = Real::quiet_NaN();
    EXPECT_EQ(app.keepAwakeManager.idleThresholdMinutes, 3.0);
    EXPECT_EQ(app.keepAwakeManager.moveEveryMinutes, 1.0);
    EXPECT_FALSE(desktop.defaults.contains("keep_awake_idle_threshold_minutes"));
    EXPECT_FALSE(desktop.defaults.contains("keep_awake_move_every_minutes"));
}

}  // namespace
}  // namespace trelvan
