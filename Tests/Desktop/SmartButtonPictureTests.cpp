#include "Desktop/SmartButtonTest.hpp"

#include <cstdio>

// The README's pictures: the menu with real applications, light and dark, and the way from the press to what
// came of it, as frames. Kept in the folder of artifacts; scripts/make-pictures puts them together.

namespace trelvan::desktop {
namespace {

class SmartButtonPictureTest : public SmartButtonTest {
  protected:
    /// Of these the first `wanted` that are installed.
    static std::vector<std::pair<std::string, std::string>> applications(std::size_t wanted) {
        const std::vector<std::pair<std::string, std::string>> candidates{
            {"Files", "thunar"},
            {"Editor", "org.xfce.mousepad"},
            {"Terminal", "org.gnome.Terminal"},
            {"Notes", "org.kde.kate"},
            {"Screenshot", "xfce4-screenshooter"},
            {"Settings", "xfce-settings-manager"},
            {"Terminal", "debian-xterm"},
            {"Unicode terminal", "debian-uxterm"},
        };
        std::vector<std::pair<std::string, std::string>> found;
        for (const auto& [name, entry] : candidates) {
            const auto path = "/usr/share/applications/" + entry + ".desktop";
            if (found.size() < wanted && std::filesystem::exists(path)) found.emplace_back(name, path);
        }
        return found;
    }
    Settings pictured(const std::string& theme) {
        const auto found = applications(4);
        Settings settings = Settings().map(opener, "Smart Button").set("general_theme", theme);
        const auto entry = [&](std::size_t index) {
            if (index < found.size()) settings.menuApplication(found[index].first, found[index].second);
        };
        settings.menuApplication("Calculator", "/usr/bin/xcalc");
        settings.menuShortcut("Copy", keyC, control, "⌃C");
        entry(0);
        settings.menuShortcut("Paste as plain text", keyV, control | 0x20000, "⌃⇧V");
        entry(1);
        entry(2);
        settings.menuShortcut("Reopen closed tab", 17, control | 0x20000, "⌃⇧T");
        entry(3);
        return settings;
    }
    /// A part of the screen with the pointer, which the server leaves out of its pictures.
    void keep(const std::string& name) {
        const auto folder = std::filesystem::path(TRELVAN_ARTIFACTS);
        std::filesystem::create_directories(folder);
        const auto picture = folder / name;
        std::filesystem::remove(picture);
        const auto [x, y] = client().pointer();
        char arrow[256];
        std::snprintf(arrow, sizeof arrow, "polygon %d,%d %d,%d %d,%d %d,%d %d,%d %d,%d %d,%d", x, y, x,
                      y + 17, x + 4, y + 13, x + 7, y + 19, x + 10, y + 18, x + 7, y + 12, x + 12, y + 12);
        ChildProcess convert(
            Launch{.arguments = {"/usr/bin/convert", "x:root", "-fill", "black", "-stroke", "white", "-draw",
                                 arrow, "-crop", "560x520+440+180", "+repage", picture},
                   .environment = desktop().environment(),
                   .directory = desktop().folder(),
                   .output = desktop().folder() / "convert.output",
                   .errors = {}});
        EXPECT_EQ(convert.waitForEnd(timeout), 0) << readFile(desktop().folder() / "convert.output");
        EXPECT_GT(std::filesystem::file_size(picture), 2'000U);
    }
    void moveTo(Position place) {
        const Position from = client().pointer();
        trackball().move(place.x - from.x, place.y - from.y);
        EXPECT_TRUE(waitUntil([&] { return client().pointer() == place; }));
    }
    /// What a window draws comes a little after it is there.
    static void settle() {
        waitUntil([] { return false; }, std::chrono::milliseconds{500});
    }
    /// Waits for a window of that title and moves it there.
    [[nodiscard]] bool bring(const std::string& name, Position place) {
        return waitUntil([&] {
            for (const long window :
                 client().connection().property(client().connection().root(), "_NET_CLIENT_LIST")) {
                char* title = nullptr;
                if (XFetchName(client().connection().get(), static_cast<Window>(window), &title) == 0)
                    continue;
                const bool isIt = title != nullptr && std::string(title).find(name) != std::string::npos;
                if (title != nullptr) XFree(title);
                if (!isIt) continue;
                XMoveWindow(client().connection().get(), static_cast<Window>(window), place.x, place.y);
                XFlush(client().connection().get());
                return true;
            }
            return false;
        });
    }
};

TEST_F(SmartButtonPictureTest, MenuOfRealApplicationsIsKeptLightAndDark) {
    for (const auto* theme : {"Light", "Dark"}) {
        start(pictured(theme));
        openAt({720, 440});
        moveTo({720 + radius, 445});
        settle();
        keep(std::string("readme-menu-") + theme + ".png");
        desktop().keyboard().keyStroke(client().keyCode(XK_Escape));
        EXPECT_TRUE(isClosed());
    }
}

TEST_F(SmartButtonPictureTest, WayFromThePressToTheApplicationIsKept) {
    start(pictured("Light"));
    client().warpPointer({720, 440});
    settle();
    keep("readme-frame-0.png");
    trackball().click(xButton(opener));
    ASSERT_TRUE(isOpen());
    settle();
    keep("readme-frame-1.png");
    const Position goal = entry({720, 440}, 0, 8);
    moveTo({(720 + goal.x) / 2, (440 + goal.y) / 2});
    settle();
    keep("readme-frame-2.png");
    moveTo(goal);
    settle();
    keep("readme-frame-3.png");
    trackball().click(1);
    EXPECT_TRUE(isClosed());
    EXPECT_TRUE(bring("Calculator", {610, 270}));
    settle();
    keep("readme-frame-4.png");
}

}  // namespace
}  // namespace trelvan::desktop
