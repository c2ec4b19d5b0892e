#include "Tools/Simulate/InputLine.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

class InputLineTest : public testing::Test {
  protected:
    InputLineTest() {
        ButtonMapping copy;
        copy.buttonNumber = 3;
        copy.action() = ButtonAction::copy;
        copy.functionSlots = 2;
        copy.secondaryTrigger1() = ButtonModifierTrigger::shift;
        copy.secondaryAction() = ButtonAction::customShortcut;
        ButtonMapping wheel;
        wheel.buttonNumber = -101;
        wheel.action() = ButtonAction::volumeDown;
        profile.mappings = {copy, wheel};
    }
    std::string line(SeenInput input, AppLanguage language = AppLanguage::english) const {
        return inputLine(input, ProfileSnapshot(profile), linuxShortcuts, language);
    }

    TrackballProfile profile;
    SeenInput press{.buttonNumber = 3, .device = "Ball", .isServed = true};
};

TEST_F(InputLineTest, PressIsToldWithNumberDeviceAndFunction) {
    EXPECT_TRUE(line(press).starts_with("button 3  Ball: runs 'Copy'. Sent: Control+C")) << line(press);
    EXPECT_TRUE(line(press, AppLanguage::spanish)
                    .starts_with("botón 3  Ball: ejecuta 'Copiar'. Se envía: Control+C"));
}

TEST_F(InputLineTest, HeldModifiersAreNamedAndDecide) {
    press.flags = flag::shift | flag::control;
    EXPECT_EQ(line(press),
              "button 3  Ball  Control+Shift: runs 'Custom Shortcut'. Nothing is sent: no shortcut has been "
              "recorded\n");
}

TEST_F(InputLineTest, UnmappedButtonPasses) {
    press.buttonNumber = 7;
    EXPECT_EQ(line(press), "button 7  Ball: passes as it is\n");
}

TEST_F(InputLineTest, WheelIsToldByDirectionAndNumber) {
    press.kind = SeenInput::Kind::wheelDown;
    EXPECT_EQ(line(press), "wheel down (-101)  Ball: runs 'Volume -'. Sent: the media key\n");
    press.kind = SeenInput::Kind::wheelUp;
    EXPECT_EQ(line(press), "wheel up (-100)  Ball: passes as it is\n");
    press.kind = SeenInput::Kind::wheelLeft;
    EXPECT_EQ(line(press, AppLanguage::spanish), "rueda izquierda  Ball: pasa; no se puede asignar\n");
}

TEST_F(InputLineTest, DeviceThatIsNotServedIsSaidToBeLeftAlone) {
    press.isServed = false;
    EXPECT_EQ(line(press), "button 3  Ball: left alone: no mouse or trackball\n");
}

}  // namespace
}  // namespace trelvan
