#include "Core/SmartButtonController.hpp"
#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::ElementsAre;
using testing::IsEmpty;

class SmartButtonControllerTest : public testing::Test {
  protected:
    SmartButtonControllerTest() {
        desktop.disk["/Applications/Notes.app"] = {SimulatedItem::Kind::application, "com.apple.Notes"};
        desktop.onTrace = [this](const TraceEntry& entry) { trace.push_back(entry); };
        make();
    }
    void make() {
        controller.emplace(SmartButtonController::Ports{.screens = desktop.screens(),
                                                        .poster = desktop.eventPoster(),
                                                        .workspace = desktop.workspace(),
                                                        .background = desktop.backgroundQueue(),
                                                        .mainQueue = desktop.mainQueue()},
                           panels, desktop.logger);
    }
    static SmartButtonConfiguration configurationOf(std::vector<SmartButtonApp> apps) {
        return {.isEnabled = true, .triggerButtonNumber = {}, .triggerModifier = {}, .apps = std::move(apps)};
    }
    static SmartButtonApp application(const std::string& name, const std::string& path) {
        SmartButtonApp app;
        app.name = name;
        app.path = path;
        return app;
    }
    static SmartButtonApp shortcut(const std::string& name, const CustomShortcut& keys) {
        SmartButtonApp app;
        app.name = name;
        app.kind = SmartButtonItemKind::shortcut;
        app.shortcut = keys;
        return app;
    }
    void show(const SmartButtonApp& app) { controller->show(configurationOf({app})); }
    void choose() {
        const auto view = panels.view();
        view.onLaunch(view.apps.front());
    }

    template <typename What>
    [[nodiscard]] std::vector<What> traced() const {
        std::vector<What> result;
        for (const auto& entry : trace) {
            if (const auto* what = std::get_if<What>(&entry.what)) result.push_back(*what);
        }
        return result;
    }
    [[nodiscard]] std::vector<std::string> logged(LogLevel level) const {
        std::vector<std::string> result;
        for (const auto& line : traced<trace::Logged>()) {
            if (line.level == level) result.push_back(line.message);
        }
        return result;
    }

    SimulatedDesktop desktop;
    test::FakePanels panels;
    std::vector<TraceEntry> trace;
    std::optional<SmartButtonController> controller;
    const SmartButtonApp notes = application("Notes", "/Applications/Notes.app");
};

TEST_F(SmartButtonControllerTest, ConfigurationWithoutEntriesIsLoggedAndShowsNothing) {
    controller->show(configurationOf({}));
    EXPECT_EQ(panels.overlaysShown, 0);
    EXPECT_FALSE(controller->isShown);
    EXPECT_THAT(logged(LogLevel::warning), ElementsAre("Smart Button no tiene aplicaciones configuradas"));
}

TEST_F(SmartButtonControllerTest, ConfigurationWithoutEntriesLeavesAnOpenMenu) {
    show(notes);
    controller->show(configurationOf({}));
    EXPECT_EQ(panels.open.size(), 1U);
    EXPECT_TRUE(controller->isShown);
}

TEST_F(SmartButtonControllerTest, ViewHasEntriesPointerScreenAndRadii) {
    desktop.pointer = {100, 200};
    show(notes);
    const auto view = panels.view();
    ASSERT_EQ(view.apps.size(), 1U);
    EXPECT_EQ(view.apps.front(), notes);
    EXPECT_EQ(view.pointerLocation, (BottomLeftPoint{100, 700}));
    EXPECT_EQ(view.screenFrame, (BottomLeftRect{0, 0, 1440, 900}));
    EXPECT_EQ(view.radius, 138);
    EXPECT_EQ(view.outerRingRadius, 230);
    EXPECT_TRUE(controller->isShown);
}

TEST_F(SmartButtonControllerTest, ScreenIsTheFirstUnderThePointer) {
    desktop.screenFrames = {{0, 0, 1440, 900}, {1440, 0, 1920, 1080}, {1440, 0, 800, 600}};
    desktop.pointer = {1500, 450};
    show(notes);
    EXPECT_EQ(panels.view().screenFrame, (BottomLeftRect{1440, 0, 1920, 1080}));
}

TEST_F(SmartButtonControllerTest, UpperEdgeIsNoPartOfItsScreen) {
    desktop.screenFrames = {{0, 0, 1440, 900}, {1440, 0, 1440, 900}, {1440, 900, 1440, 900}};
    desktop.pointer = {1500, 0};
    show(notes);
    EXPECT_EQ(panels.view().screenFrame, (BottomLeftRect{1440, 900, 1440, 900}));
}

TEST_F(SmartButtonControllerTest, PointerOnNoScreenTakesTheMainOne) {
    desktop.pointer = {-500, 450};
    show(notes);
    EXPECT_EQ(panels.view().screenFrame, (BottomLeftRect{0, 0, 1440, 900}));
}

TEST_F(SmartButtonControllerTest, WithoutAnyScreenNothingIsShown) {
    desktop.screenFrames.clear();
    show(notes);
    EXPECT_EQ(panels.overlaysShown, 0);
    EXPECT_FALSE(controller->isShown);
}

TEST_F(SmartButtonControllerTest, ShowingAgainReplacesTheMenu) {
    show(notes);
    desktop.pointer = {300, 300};
    show(notes);
    EXPECT_EQ(panels.overlaysShown, 2);
    EXPECT_EQ(panels.open.size(), 1U);
    EXPECT_EQ(panels.view().pointerLocation, (BottomLeftPoint{300, 600}));
    EXPECT_TRUE(controller->isShown);
}

TEST_F(SmartButtonControllerTest, SecondPressClosesTheMenu) {
    controller->toggle(configurationOf({notes}));
    EXPECT_EQ(panels.open.size(), 1U);
    controller->toggle(configurationOf({notes}));
    EXPECT_THAT(panels.open, IsEmpty());
    EXPECT_FALSE(controller->isShown);
    controller->toggle(configurationOf({notes}));
    EXPECT_EQ(panels.open.size(), 1U);
}

TEST_F(SmartButtonControllerTest, ApplicationIsOpenedLoggedAndTheMenuClosed) {
    show(notes);
    choose();
    EXPECT_THAT(traced<trace::Opened>(),
                ElementsAre(trace::Opened{trace::Opened::Kind::application, "/Applications/Notes.app"}));
    EXPECT_THAT(logged(LogLevel::info), ElementsAre("Smart Button abrió Notes"));
    EXPECT_THAT(panels.open, IsEmpty());
    EXPECT_FALSE(controller->isShown);
}

TEST_F(SmartButtonControllerTest, ApplicationThatIsGoneIsLoggedAndTheMenuClosed) {
    show(application("Gone", "/Applications/Gone.app"));
    choose();
    EXPECT_THAT(traced<trace::Opened>(), IsEmpty());
    EXPECT_THAT(logged(LogLevel::warning),
                ElementsAre("Smart Button: no se encontró /Applications/Gone.app"));
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(SmartButtonControllerTest, ShortcutIsPostedDownAndUpAtOnceWithItsFlags) {
    show(shortcut("Copy", {.keyCode = 8, .modifiersRawValue = flag::command, .displayString = "⌘C"}));
    choose();
    EXPECT_THAT(traced<trace::PostedKey>(), IsEmpty()) << "posted from the background queue";
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(traced<trace::PostedKey>(),
                ElementsAre(trace::PostedKey{8, true, flag::command, TapLocation::hid},
                            trace::PostedKey{8, false, flag::command, TapLocation::hid}));
    for (const auto& entry : trace) EXPECT_EQ(entry.at, Seconds{0});
    EXPECT_THAT(logged(LogLevel::info), ElementsAre("Smart Button ejecutó shortcut Copy"));
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(SmartButtonControllerTest, EmptyShortcutIsLoggedAndTheMenuClosed) {
    show(shortcut("Nothing", {}));
    choose();
    EXPECT_THAT(traced<trace::PostedKey>(), IsEmpty());
    EXPECT_THAT(logged(LogLevel::warning), ElementsAre("Smart Button: shortcut vacío"));
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(SmartButtonControllerTest, KeyZeroWithATextIsAShortcut) {
    show(shortcut("A", {.keyCode = 0, .modifiersRawValue = 0, .displayString = "A"}));
    choose();
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_EQ(traced<trace::PostedKey>().size(), 2U);
}

TEST_F(SmartButtonControllerTest, ShortcutThatCannotBeMadeStillClosesTheMenu) {
    desktop.failures.eventCreate = true;
    show(shortcut("Copy", {.keyCode = 8, .modifiersRawValue = flag::command, .displayString = "⌘C"}));
    choose();
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(traced<trace::PostedKey>(), IsEmpty());
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(SmartButtonControllerTest, ApplicationsFolderIsOpenedAndTheMenuClosed) {
    show(notes);
    panels.view().onOpenApplications();
    EXPECT_THAT(traced<trace::Opened>(),
                ElementsAre(trace::Opened{trace::Opened::Kind::folder, "/Applications"}));
    EXPECT_THAT(panels.open, IsEmpty());
}

TEST_F(SmartButtonControllerTest, DismissClosesTheMenuAndDoesNothingElse) {
    show(notes);
    panels.view().onDismiss();
    EXPECT_THAT(panels.open, IsEmpty());
    EXPECT_FALSE(controller->isShown);
    EXPECT_THAT(trace, IsEmpty());
}

TEST_F(SmartButtonControllerTest, EditWithoutContentOnlyComesToTheFront) {
    show(notes);
    panels.view().onEdit();
    desktop.time.runDue();
    EXPECT_THAT(panels.open, IsEmpty());
    EXPECT_EQ(panels.activations, 1);
    EXPECT_EQ(panels.editorsMade, 0);
    EXPECT_EQ(controller->openSmartButtonSettings, 0U);
}

TEST_F(SmartButtonControllerTest, EditorIsMadeOnceAndGetsFreshContentEachTime) {
    int contents = 0;
    controller->editorContentProvider = [&] {
        ++contents;
        return std::make_unique<SmartButtonPanels::Content>();
    };
    for (int time = 1; time <= 2; ++time) {
        show(notes);
        panels.view().onEdit();
        EXPECT_EQ(panels.editorsShown, time);
        EXPECT_EQ(contents, time);
        // Told only once the editor is there.
        EXPECT_EQ(controller->openSmartButtonSettings, static_cast<std::uint64_t>(time - 1));
        desktop.time.runDue();
        EXPECT_EQ(controller->openSmartButtonSettings, static_cast<std::uint64_t>(time));
    }
    EXPECT_EQ(panels.editorsMade, 1);
}

TEST_F(SmartButtonControllerTest, FunctionsOfAViewThatOutlivesTheControllerDoNothing) {
    show(notes);
    const auto view = panels.view();
    controller->editorContentProvider = [] { return std::make_unique<SmartButtonPanels::Content>(); };
    view.onEdit();
    controller.reset();
    trace.clear();
    view.onLaunch(notes);
    view.onEdit();
    view.onOpenApplications();
    view.onDismiss();
    desktop.time.runDue();
    EXPECT_THAT(trace, IsEmpty());
    EXPECT_EQ(panels.editorsShown, 1);
}

TEST_F(SmartButtonControllerTest, FunctionsOfAnEarlierMenuActOnNoOtherEntry) {
    show(notes);
    const auto earlier = panels.view();
    show(notes);
    earlier.onDismiss();
    EXPECT_THAT(panels.open, IsEmpty());
    earlier.onDismiss();
    EXPECT_FALSE(controller->isShown);
}

}  // namespace
}  // namespace trelvan
