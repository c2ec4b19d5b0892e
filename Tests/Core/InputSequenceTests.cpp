#include "Core/InputSequence.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::ElementsAre;
using testing::IsEmpty;

class InputSequenceTest : public testing::Test {
  protected:
    void perform(InputSequence sequence) {
        InputSequence::perform(std::move(sequence), desktop.backgroundQueue(), desktop.eventPoster());
    }
    std::function<void()> note(const char* name) {
        return [this, name] { order.emplace_back(name); };
    }
    TestDesktop desktop;
    std::vector<std::string> order;
};

TEST_F(InputSequenceTest, StepsBeforeTheFirstPauseRunAtOnce) {
    InputSequence sequence;
    sequence.then(note("a")).pause(Seconds{1}).then(note("b"));
    perform(std::move(sequence));
    EXPECT_THAT(order, ElementsAre("a"));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(order, ElementsAre("a", "b"));
    EXPECT_EQ(desktop.time.uptime(), Seconds{1});
}

TEST_F(InputSequenceTest, ExpandedStepsComeBeforeTheRest) {
    InputSequence sequence;
    sequence.then(note("a"))
        .expand([this] {
            InputSequence inner;
            inner.then(note("b")).pause(Seconds{0.5}).then(note("c"));
            return inner;
        })
        .then(note("d"));
    perform(std::move(sequence));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(order, ElementsAre("a", "b", "c", "d"));
}

TEST_F(InputSequenceTest, KeyThatCannotBeMadeIsLeftOut) {
    InputSequence sequence;
    sequence.key(EventSourceState::hidSystem, 8, true, 0, TapLocation::hid)
        .pause(Seconds{0.1})
        .key(EventSourceState::hidSystem, 8, false, 0, TapLocation::hid);
    desktop.failures.eventCreate = true;
    perform(std::move(sequence));
    desktop.failures.eventCreate = false;
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(desktop.all<trace::PostedKey>(),
                ElementsAre(trace::PostedKey{8, false, 0, TapLocation::hid}));
}

TEST_F(InputSequenceTest, TwoSequencesInterleave) {
    InputSequence slow;
    slow.then(note("s1")).pause(Seconds{0.010}).then(note("s2"));
    InputSequence quick;
    quick.then(note("q1")).pause(Seconds{0.004}).then(note("q2"));
    perform(std::move(slow));
    perform(std::move(quick));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(order, ElementsAre("s1", "q1", "q2", "s2"));
}

TEST_F(InputSequenceTest, DesktopSwitchIsEmptyWhenOneEventCannotBeMade) {
    desktop.failures.eventCreate = true;
    perform(desktopSwitch(key::leftArrow, desktop.eventPoster()));
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(desktop.entries, IsEmpty());
    EXPECT_EQ(desktop.time.uptime(), Seconds{0});
}

}  // namespace
}  // namespace trelvan
