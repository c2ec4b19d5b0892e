#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <algorithm>
#include <ostream>

namespace trelvan::desktop {
namespace {

class ButtonTest : public DesktopTest {
  protected:
    static constexpr int extra = xButton(3);
    static constexpr int secondExtra = xButton(4);
};

const KeyStroke copy{XK_c, ControlMask};
const KeyStroke paste{XK_v, ControlMask};
const KeyStroke cut{XK_x, ControlMask};
const KeyStroke undo{XK_z, ControlMask};

TEST_F(ButtonTest, MappedPressArrivesAsItsShortcutAndNotAsTheButton) {
    start(Settings().map(3, "Copiar"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{copy});
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    EXPECT_EQ(client().count(Kind::buttonRelease, extra), 0);
}

TEST_F(ButtonTest, MappedPressActsBeforeItsReleaseAndOnlyOnce) {
    start(Settings().map(3, "Copiar"));
    trackball().press(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    trackball().release(extra);
    passSentinel();
    trackball().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() >= 2; }));
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, copy}));
}

TEST_F(ButtonTest, UnmappedPressesAndReleasesArriveUnchanged) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {2, 9, 11, 12}) {
        trackball().press(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonPress, static_cast<unsigned>(button)));
        EXPECT_EQ(client().count(Kind::buttonRelease, static_cast<unsigned>(button)), 0);
        trackball().release(button);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, static_cast<unsigned>(button)));
    }
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{2, 9, 11, 12}));
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
}

TEST_F(ButtonTest, NoClickWaitsForTheProgramsNextTimer) {
    start(Settings().map(3, "Copiar"));
    // Half of the program's shortest timer on an idle desktop.
    constexpr std::chrono::milliseconds soon{1000};
    for (int click = 1; click <= 500; ++click) {
        trackball().click(9);
        ASSERT_TRUE(client().waitForButton(Kind::buttonRelease, 9, click, soon)) << "click " << click;
    }
}

TEST_F(ButtonTest, ManyButtonsHeldAtOnceKeepTheirNumbers) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {12, 11, 1, 9}) trackball().press(button);
    for (const int button : {11, 12, 9, 1}) trackball().release(button);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{12, 11, 1, 9}));
    for (const unsigned button : {1U, 9U, 11U, 12U})
        EXPECT_EQ(client().count(Kind::buttonRelease, button), 1) << button;
}

TEST_F(ButtonTest, ButtonMappedToNothingArrivesUnchanged) {
    start(Settings().map(3, "Ninguna"));
    trackball().click(extra);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{extra});
    EXPECT_EQ(client().count(Kind::buttonRelease, extra), 1);
}

TEST_F(ButtonTest, LeftAndRightClicksArriveUnchanged) {
    start(Settings().map(3, "Copiar"));
    trackball().click(1);
    trackball().click(3);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{1, 3}));
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 1);
    EXPECT_EQ(client().count(Kind::buttonRelease, 3), 1);
}

TEST_F(ButtonTest, BothProtocolsOfApplicationsSeeTheSame) {
    useClient(Protocol::xinput2);
    start(Settings().map(3, "Copiar"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    trackball().click(secondExtra);
    trackball().scrollVertical(1);
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{copy});
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{secondExtra, 4}));
}

TEST_F(ButtonTest, EveryPointerIsServed) {
    start(Settings().map(3, "Copiar").map(4, "Pegar"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    mouse().click(secondExtra);
    EXPECT_TRUE(client().waitForStroke(paste));
    mouse().click(2);
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, paste}));
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{2});
}

struct SlotCase {
    const char* name;
    KeySym held;  ///< none: no key is held
    KeyStroke stroke;
};

void PrintTo(const SlotCase& tested, std::ostream* out) {
    *out << tested.name;
}

class ButtonSlotTest : public ButtonTest, public testing::WithParamInterface<SlotCase> {
  protected:
    void startWithFourFunctions() {
        start(Settings().map(3, "Copiar",
                             {{"functionSlots", 4},
                              {"secondaryTrigger1", "Shift"},
                              {"secondaryAction", "Pegar"},
                              {"tertiaryTrigger1", "Control"},
                              {"tertiaryAction", "Cortar"},
                              {"quaternaryTrigger1", "Command"},
                              {"quaternaryAction", "Deshacer"}}));
    }
};

TEST_P(ButtonSlotTest, HeldKeyChoosesTheFunctionAndIsNotPartOfWhatArrives) {
    startWithFourFunctions();
    if (GetParam().held != 0) holdKey(GetParam().held);
    trackball().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return !client().strokes().empty(); }));
    EXPECT_TRUE(client().waitForStroke(GetParam().stroke));
    if (GetParam().held != 0) releaseKey(GetParam().held);
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{GetParam().stroke});
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

INSTANTIATE_TEST_SUITE_P(FourSlots, ButtonSlotTest,
                         testing::Values(SlotCase{"Primary", 0, copy}, SlotCase{"Shift", XK_Shift_L, paste},
                                         SlotCase{"RightShift", XK_Shift_R, paste},
                                         SlotCase{"Control", XK_Control_L, cut},
                                         SlotCase{"Command", XK_Super_L, undo}),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(ButtonTest, KeyHeldDuringAnActionIsStillHeldAfterIt) {
    start(Settings().map(
        3, "Copiar", {{"functionSlots", 2}, {"secondaryTrigger1", "Shift"}, {"secondaryAction", "Pegar"}}));
    holdKey(XK_Shift_L);
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(paste));
    // The keyboard takes another pipeline than the trackball: type until the program has put the key back.
    const auto typed = [&](const std::vector<ClientEvent>& all) {
        return std::any_of(all.begin(), all.end(), [](const ClientEvent& event) {
            return event.kind == Kind::keyPress && event.key == XK_a && event.state == ShiftMask;
        });
    };
    EXPECT_TRUE(waitUntil([&] {
        desktop().keyboard().keyStroke(client().keyCode(XK_a));
        return client().waitFor(typed, std::chrono::milliseconds{20});
    }));
    releaseKey(XK_Shift_L);
}

TEST_F(ButtonTest, DragIsAPressMotionsWithTheButtonHeldAndARelease) {
    start(Settings().map(3, "Copiar"));
    for (const auto& [button, mask] : {std::pair{1, Button1Mask}, {2, Button2Mask}, {3, Button3Mask}}) {
        client().forget();
        trackball().press(button);
        trackball().move(20, 10);
        trackball().move(15, -5);
        trackball().release(button);
        passSentinel();
        std::vector<Kind> order;
        for (const ClientEvent& event : client().events()) {
            if (event.button == sentinelButton) break;
            order.push_back(event.kind);
            if (event.kind == Kind::motion) {
                EXPECT_EQ(event.state & mask, static_cast<unsigned>(mask));
            }
        }
        EXPECT_EQ(order,
                  (std::vector<Kind>{Kind::buttonPress, Kind::motion, Kind::motion, Kind::buttonRelease}));
    }
}

TEST_F(ButtonTest, TwoClicksInAQuickRowMakeADoubleClick) {
    start(Settings().map(3, "Copiar"));
    trackball().click(1);
    trackball().click(1);
    passSentinel();
    std::vector<ClientEvent> presses;
    for (const ClientEvent& event : client().events()) {
        if (event.kind == Kind::buttonPress && event.button == 1) presses.push_back(event);
    }
    ASSERT_EQ(presses.size(), 2U);
    EXPECT_LT(presses[1].time - presses[0].time, 250U);
    EXPECT_EQ(presses[0].x, presses[1].x);
    EXPECT_EQ(presses[0].y, presses[1].y);
}

TEST_F(ButtonTest, PressAtTheLowerEdgeOfTheScreenIsLeftAlone) {
    start(Settings().map(3, "Copiar"));
    const Position edge{VirtualDesktop::width / 2, VirtualDesktop::height - 40};
    Display* display = client().connection().get();
    XMoveWindow(display, client().window(), 240, 320);
    ASSERT_TRUE(waitUntil([&] { return client().middle().y + 280 > edge.y; }));
    client().warpPointer(edge);
    trackball().click(extra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));
    client().warpPointer({edge.x, edge.y - 60});
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{copy});
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{extra});
}

}  // namespace
}  // namespace trelvan::desktop
