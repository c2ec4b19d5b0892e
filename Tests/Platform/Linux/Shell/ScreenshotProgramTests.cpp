#include "Platform/Linux/Shell/ScreenshotProgram.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

using Words = std::vector<std::string>;

TEST(ScreenshotProgram, EachKind_HasItsOption) {
    EXPECT_EQ(screenshotCommand(DesktopKind::xfce, SystemView::screenshotFull),
              (Words{"xfce4-screenshooter", "-f"}));
    EXPECT_EQ(screenshotCommand(DesktopKind::xfce, SystemView::screenshotTool),
              (Words{"xfce4-screenshooter"}));
    EXPECT_EQ(screenshotCommand(DesktopKind::mate, SystemView::screenshotArea),
              (Words{"mate-screenshot", "-a"}));
    EXPECT_EQ(screenshotCommand(DesktopKind::cinnamon, SystemView::screenshotTool),
              (Words{"gnome-screenshot", "-i"}));
}

TEST(ScreenshotProgram, DesktopsThatTakeThemThemselvesAndOtherViews_HaveNone) {
    for (const auto desktop : {DesktopKind::gnome, DesktopKind::kde, DesktopKind::other}) {
        EXPECT_EQ(screenshotCommand(desktop, SystemView::screenshotFull), Words{});
        EXPECT_FALSE(startScreenshot(desktop, SystemView::screenshotFull));
    }
    EXPECT_EQ(screenshotCommand(DesktopKind::xfce, SystemView::lockScreen), Words{});
}

}  // namespace
}  // namespace trelvan
