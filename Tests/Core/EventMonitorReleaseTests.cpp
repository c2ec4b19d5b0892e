#include "Support/MonitorFixture.hpp"

namespace trelvan {
namespace {

using testing::ElementsAre;

/// Releases on a platform where they go the way of their press.
class EventMonitorReleaseTest : public test::MonitorFixture {
  protected:
    EventMonitorReleaseTest() {
        desktop.releasesFollowPresses = true;
        start();
        handleButtons();
    }
    /// The lines that say what became of a button.
    std::vector<std::string> said() const {
        std::vector<std::string> lines;
        for (const auto& logged : desktop.all<trace::Logged>()) {
            if (logged.message.starts_with("Evento botón")) lines.push_back(logged.message);
        }
        return lines;
    }
};

TEST_F(EventMonitorReleaseTest, ReleaseOfASwallowedPress_IsSwallowedUnasked) {
    EXPECT_EQ(down(3), TapAnswer::swallow);
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_EQ(calls.size(), 1U);
    EXPECT_THAT(said(), ElementsAre("Evento botón 3 consumido en down (swallowed)",
                                    "Evento botón 3 ya manejado en down; no se repite en up"));
}

TEST_F(EventMonitorReleaseTest, ReleaseThatTheHandlerTakes_PassesWithItsPressAndTheLogSaysSo) {
    consumes = false;
    EXPECT_EQ(down(3), TapAnswer::deliver);
    consumes = true;
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(calls.size(), 2U) << "a declined press is offered once more";
    EXPECT_THAT(said(), ElementsAre("Evento botón 3 consumido en up; pasa como su pulsación (passed)"));
}

TEST_F(EventMonitorReleaseTest, ReleaseInTheSystemsStrip_FollowsItsPressToo) {
    EXPECT_EQ(down(3), TapAnswer::swallow);
    desktop.pointer = {700, 890};
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_EQ(down(3), TapAnswer::deliver);
    desktop.pointer = {700, 400};
    consumes = false;
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(said().back(), "Evento botón 3 ya manejado en down; no se repite en up");
    EXPECT_EQ(said().size(), 2U);
}

TEST_F(EventMonitorReleaseTest, PressWhoseReleaseNeverCame_SaysNothingAboutTheNextOne) {
    EXPECT_EQ(down(3), TapAnswer::swallow);
    // Its device was pulled out; another one's press falls into the system's strip.
    desktop.pointer = {700, 890};
    EXPECT_EQ(down(3), TapAnswer::deliver);
    EXPECT_EQ(up(3), TapAnswer::deliver);
    EXPECT_EQ(said().size(), 1U);
}

TEST_F(EventMonitorReleaseTest, WhereTheAnswerCounts_TheReleaseOfAPassedPressIsSwallowed) {
    desktop.releasesFollowPresses = false;
    consumes = false;
    EXPECT_EQ(down(3), TapAnswer::deliver);
    consumes = true;
    EXPECT_EQ(up(3), TapAnswer::swallow);
    EXPECT_THAT(said(), ElementsAre("Evento botón 3 consumido (swallowed)"));
}

}  // namespace
}  // namespace trelvan
