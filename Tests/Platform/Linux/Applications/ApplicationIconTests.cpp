#include "Platform/Linux/Applications/ApplicationIcon.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace trelvan {
namespace {

std::optional<std::string> iconOfEntry(const std::string& content) {
    const auto path = std::filesystem::path(testing::TempDir()) / "trelvan-icon-test.desktop";
    std::ofstream(path) << content;
    auto icon = applicationIcon(path.string());
    std::filesystem::remove(path);
    return icon;
}

TEST(ApplicationIcon, DesktopEntry_HasTheIconThatItNames) {
    EXPECT_EQ(iconOfEntry("[Desktop Entry]\nType=Application\nExec=x\nIcon=org.example.Notes\n"),
              "org.example.Notes");
    EXPECT_EQ(iconOfEntry("[Desktop Entry]\nType=Application\nExec=x\nIcon=/opt/x/icon.png\n"),
              "/opt/x/icon.png");
}

TEST(ApplicationIcon, DesktopEntryWithoutAnIcon_HasNone) {
    EXPECT_EQ(iconOfEntry("[Desktop Entry]\nType=Application\nExec=x\n"), std::nullopt);
    EXPECT_EQ(iconOfEntry("[Desktop Entry]\nType=Link\nIcon=x\n"), std::nullopt);
    EXPECT_EQ(applicationIcon("/nowhere/at/all.desktop"), std::nullopt);
}

TEST(ApplicationIcon, AppImage_HasTheNameBeforeItsVersion) {
    EXPECT_EQ(applicationIcon("/home/me/Krita-5.2.2-x86_64.AppImage"), "krita");
    EXPECT_EQ(applicationIcon("/home/me/My-Paint_v2.AppImage"), "my-paint");
    EXPECT_EQ(applicationIcon("Nextcloud-x86_64.AppImage"), "nextcloud");
    EXPECT_EQ(applicationIcon("/home/me/LibreOffice.AppImage"), "libreoffice");
    EXPECT_EQ(applicationIcon("/home/me/7zip.AppImage"), "7zip");
}

TEST(ApplicationIcon, Executable_HasItsFileName) {
    EXPECT_EQ(applicationIcon("/usr/bin/gimp"), "gimp");
    EXPECT_EQ(applicationIcon("/usr/bin/org.gnome.Maps"), "org.gnome.Maps");
    EXPECT_EQ(applicationIcon("/home/me/backup.sh"), "backup");
    EXPECT_EQ(applicationIcon(""), std::nullopt);
}

}  // namespace
}  // namespace trelvan
