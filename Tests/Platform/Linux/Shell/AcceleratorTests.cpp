#include "Platform/Linux/Shell/Accelerator.hpp"
#include "Platform/Linux/Shell/AcceleratorPrinting.hpp"

#include <X11/keysym.h>
#include <gtest/gtest.h>

namespace trelvan {

namespace {

using Found = std::optional<Accelerator>;

TEST(GtkAccelerator, ModifiersInAngleBrackets_GoWithTheKey) {
    EXPECT_EQ(gtkAccelerator("<Super>d"), (Found{{XK_d, flag::command}}));
    EXPECT_EQ(gtkAccelerator("<Primary><Alt>Left"), (Found{{XK_Left, flag::control | flag::option}}));
    EXPECT_EQ(gtkAccelerator("<Control><Shift><Mod4>Page_Up"),
              (Found{{XK_Page_Up, flag::control | flag::shift | flag::command}}));
    EXPECT_EQ(gtkAccelerator("<ctrl><ALT>Delete"), (Found{{XK_Delete, flag::control | flag::option}}));
}

TEST(GtkAccelerator, KeyAlone_HasNoModifiers) {
    EXPECT_EQ(gtkAccelerator("Print"), (Found{{XK_Print, 0}}));
    EXPECT_EQ(gtkAccelerator("Super_L"), (Found{{XK_Super_L, 0}}));
    EXPECT_EQ(gtkAccelerator("<Super>period"), (Found{{XK_period, flag::command}}));
}

TEST(GtkAccelerator, Capital_IsTheKeyOfTheSmallLetter) {
    EXPECT_EQ(gtkAccelerator("<Alt>D"), (Found{{XK_d, flag::option}}));
}

TEST(GtkAccelerator, DisabledOrUnknown_IsNone) {
    for (const auto* text : {"", "disabled", "Disabled", "none", "<Super>", "<Hyper>d", "<Super",
                             "<Super>NoSuchKey", "Left<Super>", "VoidSymbol"}) {
        EXPECT_EQ(gtkAccelerator(text), std::nullopt) << text;
    }
}

TEST(QtAccelerator, NamesJoinedByPlus_AreModifiersAndAKey) {
    EXPECT_EQ(qtAccelerator("Meta+D"), (Found{{XK_d, flag::command}}));
    EXPECT_EQ(qtAccelerator("Meta+Ctrl+Left"), (Found{{XK_Left, flag::command | flag::control}}));
    EXPECT_EQ(qtAccelerator("Ctrl+Alt+PgUp"), (Found{{XK_Page_Up, flag::control | flag::option}}));
    EXPECT_EQ(qtAccelerator("Shift+Print"), (Found{{XK_Print, flag::shift}}));
    EXPECT_EQ(qtAccelerator("Ctrl+F10"), (Found{{XK_F10, flag::control}}));
    EXPECT_EQ(qtAccelerator("Meta+."), (Found{{XK_period, flag::command}}));
}

TEST(QtAccelerator, PlusItself_IsAKey) {
    EXPECT_EQ(qtAccelerator("Meta++"), (Found{{XK_plus, flag::command}}));
    EXPECT_EQ(qtAccelerator("+"), (Found{{XK_plus, 0}}));
}

TEST(QtAccelerator, LoneModifier_IsItsLeftKey) {
    EXPECT_EQ(qtAccelerator("Meta"), (Found{{XK_Super_L, 0}}));
}

TEST(QtAccelerator, DisabledOrUnknown_IsNone) {
    for (const auto* text : {"", "none", "Num+1", "Meta+NoSuchKey", "Ctrl+"}) {
        EXPECT_EQ(qtAccelerator(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace trelvan
