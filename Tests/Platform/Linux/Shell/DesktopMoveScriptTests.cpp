#include "Platform/Linux/Shell/DesktopMoveScript.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace trelvan {
namespace {

class RecordedViews : public SystemViews {
  public:
    [[nodiscard]] bool show(SystemView view, ByKeys /*byKeys*/) override {
        shown.push_back(view);
        return answer;
    }
    void setMissingObserver(MissingObserver /*observer*/) override {}
    std::vector<SystemView> shown;
    bool answer = true;
};

std::string moveScript(int keyCode) {
    return "tell application \"System Events\"\n    key code " + std::to_string(keyCode) +
           " using control down\nend tell";
}

TEST(DesktopMoveScript, MoveScripts_MoveTheDesktop) {
    RecordedViews views;
    DesktopMoveScript runner(views);
    EXPECT_EQ(runner.run(moveScript(123)).status, ScriptResult::Status::ran);
    EXPECT_EQ(runner.run(moveScript(124)).status, ScriptResult::Status::ran);
    EXPECT_EQ(views.shown, (std::vector{SystemView::desktopLeft, SystemView::desktopRight}));
}

TEST(DesktopMoveScript, RefusedMove_FailsWithAReason) {
    RecordedViews views;
    views.answer = false;
    const auto result = DesktopMoveScript(views).run(moveScript(123));
    EXPECT_EQ(result.status, ScriptResult::Status::failed);
    EXPECT_FALSE(result.error.empty());
}

TEST(DesktopMoveScript, AnyOtherScript_IsNotCreated) {
    RecordedViews views;
    DesktopMoveScript runner(views);
    for (const auto& script : {std::string("tell application \"System Events\" to get name of first process"),
                               moveScript(125), moveScript(123) + "\nbeep", std::string()}) {
        EXPECT_EQ(runner.run(script).status, ScriptResult::Status::notCreated) << script;
    }
    EXPECT_TRUE(views.shown.empty());
}

}  // namespace
}  // namespace trelvan
