#include "Platform/Linux/Applications/NoteApplications.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace trelvan {
namespace {

TEST(NoteApplicationsTest, EditorOfTheDesktopComesFirst) {
    EXPECT_EQ(noteApplications("XFCE").front(), "org.xfce.mousepad");
    EXPECT_EQ(noteApplications("KDE").front(), "org.kde.kate");
    EXPECT_EQ(noteApplications("MATE").front(), "pluma");
    EXPECT_EQ(noteApplications("LXQt").front(), "featherpad");
    EXPECT_EQ(noteApplications("GNOME").front(), "org.gnome.TextEditor");
    const auto cinnamon = noteApplications("X-Cinnamon");
    EXPECT_LT(std::ranges::find(cinnamon, "xed"), std::ranges::find(cinnamon, "org.gnome.Notes"));
}

TEST(NoteApplicationsTest, NamesAfterTheFirstCountToo) {
    EXPECT_EQ(noteApplications("ubuntu:GNOME").front(), "org.gnome.TextEditor");
    EXPECT_EQ(noteApplications("Budgie:GNOME").front(), "org.gnome.TextEditor");
}

TEST(NoteApplicationsTest, OtherDesktopsTakeANoteTakerFirstAndThenAnyEditor) {
    for (const auto* desktops : {"", "sway", "i3"}) {
        const auto all = noteApplications(desktops);
        EXPECT_EQ(all.front(), "org.gnome.Notes") << desktops;
        EXPECT_NE(std::ranges::find(all, "org.xfce.mousepad"), all.end()) << desktops;
    }
}

TEST(NoteApplicationsTest, DesktopWithoutItsOwnEditorStillHasAllTheOthers) {
    const auto others = noteApplications("");
    const auto ofXfce = noteApplications("XFCE");
    EXPECT_EQ(ofXfce.size(), others.size() + 2);
    EXPECT_TRUE(std::equal(others.rbegin(), others.rend(), ofXfce.rbegin()));
}

}  // namespace
}  // namespace trelvan
