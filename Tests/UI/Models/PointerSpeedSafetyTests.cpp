#include "UI/Models/EditorFixture.hpp"
#include "UI/Models/SensitivityControls.hpp"

#include <limits>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PointerSpeedSafetyTest : public test::EditorFixture {
  protected:
    [[nodiscard]] std::optional<double> stored() {
        desktop.settleDefaults();
        return asDouble(desktop.userDefaults().object(EventMonitor::mouseSpeedKey));
    }
    PointerSpeedSafety& speed() { return model->speed; }
    [[nodiscard]] double inForce() const { return monitor->mouseSpeed; }
};

TEST_F(PointerSpeedSafetyTest, UnconfirmedSpeedIsTakenBackAfterFiveSeconds) {
    open();
    speed().write(1.7);
    EXPECT_EQ(inForce(), 1.7);
    EXPECT_EQ(speed().secondsLeft.get(), 5);
    runFor(3.5);
    EXPECT_EQ(speed().secondsLeft.get(), 2);
    runFor(1.4);
    EXPECT_EQ(inForce(), 1.7);
    runFor(0.2);
    EXPECT_EQ(inForce(), 1.0);
    EXPECT_FALSE(speed().isPending());
    EXPECT_FALSE(stored());
}

TEST_F(PointerSpeedSafetyTest, EachMovementOfTheSliderStartsTheWaitAnew) {
    open();
    speed().write(1.5);
    runFor(4);
    speed().write(1.6);
    runFor(4);
    EXPECT_EQ(inForce(), 1.6);
    runFor(1.1);
    EXPECT_EQ(inForce(), 1.0);
}

TEST_F(PointerSpeedSafetyTest, SpeedBackAtTheSavedOneSchedulesNothing) {
    open();
    speed().write(1.5);
    speed().write(1.00005);
    EXPECT_FALSE(speed().isPending());
    runFor(6);
    EXPECT_EQ(inForce(), 1.00005);
}

TEST_F(PointerSpeedSafetyTest, ConfirmedSpeedStaysIsSavedAndIsWhatTheNextRevertGoesBackTo) {
    open();
    speed().write(1.3);
    speed().confirm();
    EXPECT_EQ(stored(), 1.3);
    runFor(6);
    EXPECT_EQ(inForce(), 1.3);
    speed().write(0.6);
    runFor(6);
    EXPECT_EQ(inForce(), 1.3);
}

TEST_F(PointerSpeedSafetyTest, SpeedInForceWhenTheEditorOpensCountsAsConfirmed) {
    monitor->mouseSpeed = 1.2;
    open();
    speed().write(2.0);
    runFor(6);
    EXPECT_EQ(inForce(), 1.2);
}

TEST_F(PointerSpeedSafetyTest, ValuesAreMovedIntoTheRange) {
    open();
    speed().write(9);
    EXPECT_EQ(inForce(), 2.0);
    speed().write(-1);
    EXPECT_EQ(inForce(), 0.5);
    speed().write(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(inForce(), 0.5);
}

TEST_F(PointerSpeedSafetyTest, RevertAndClosingTakeItBackAtOnce) {
    open();
    speed().write(1.8);
    speed().revert();
    EXPECT_EQ(inForce(), 1.0);
    speed().write(1.8);
    model->close();
    EXPECT_EQ(inForce(), 1.0);
    speed().write(1.8);
    model.reset();
    EXPECT_EQ(inForce(), 1.0);
}

TEST_F(PointerSpeedSafetyTest, OtherSettingsAreSavedWithoutTheUnconfirmedSpeed) {
    open();
    speed().write(1.8);
    monitor->scrollSpeedVertical = 2.0;
    speed().save();
    EXPECT_FALSE(stored()) << "nothing is saved while a speed waits";
    runFor(6);
    EXPECT_EQ(stored(), 1.0);
    EXPECT_EQ(asDouble(desktop.userDefaults().object(EventMonitor::scrollSpeedVerticalKey)), 2.0);
}

TEST_F(PointerSpeedSafetyTest, SpeedFromTheSettingsFileNeedsNoConfirmation) {
    open();
    speed().write(1.8);
    monitor->mouseSpeed = 1.3;
    runDue();
    runFor(6);
    EXPECT_EQ(inForce(), 1.3);
    EXPECT_EQ(speed().savedMouseSpeedValue(), 1.3);
}

TEST(SensitivityControlsTest, LabelsRangesAndFormatsAreThoseOfTheControls) {
    std::vector<std::string> toggles;
    for (const auto& toggle : sensitivityToggles()) toggles.emplace_back(toggle.label.spanish);
    EXPECT_THAT(toggles, ElementsAre("Activar scroll horizontal", "Invertir dirección de scroll",
                                     "Motor avanzado de velocidad"));
    std::vector<std::string> sliders;
    for (const auto& slider : sensitivitySliders())
        sliders.push_back(std::string(slider.label.english) + " " + shownValue(slider, slider.row.minimum) +
                          " " + shownValue(slider, slider.row.maximum));
    EXPECT_THAT(sliders, ElementsAre("Vertical scroll 0.2x 3.0x", "Horizontal scroll 0.2x 3.0x",
                                     "Mouse speed 0.5x 2.0x", "Smoothness / Acceleration 0% 100%"));
}

TEST(SensitivityControlsTest, GainRisesFromOneToTheSpeed) {
    const auto curve = gainCurve(2.0, 0.6, 65);
    ASSERT_EQ(curve.size(), 65U);
    EXPECT_EQ(curve.front().gain, 1.0);
    EXPECT_EQ(curve.back().gain, 2.0);
    EXPECT_EQ(curve.back().handSpeed, plottedHandSpeed);
    for (std::size_t index = 1; index < curve.size(); ++index)
        EXPECT_GE(curve[index].gain, curve[index - 1].gain);
}

}  // namespace
}  // namespace trelvan
