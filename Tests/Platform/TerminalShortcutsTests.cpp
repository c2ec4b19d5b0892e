#include "Platform/TerminalShortcuts.hpp"

#include <gtest/gtest.h>

#include <set>

namespace trelvan {
namespace {

const TerminalShortcuts* known(std::string_view windowClass) {
    return terminalOf(terminal::known, windowClass);
}

TEST(TerminalShortcutsTest, ClassIsFoundInAnyCaseAndOnlyWhole) {
    for (const auto* name : {"Xfce4-terminal", "xfce4-terminal", "Alacritty", "konsole", "Gnome-terminal",
                             "org.gnome.Console", "com.mitchellh.ghostty", "st-256color"}) {
        ASSERT_NE(known(name), nullptr) << name;
        EXPECT_EQ(known(name)->copy, terminal::usualCopy) << name;
        EXPECT_EQ(known(name)->paste, terminal::usualPaste) << name;
    }
    for (const auto* name : {"", "x", "xter", "xterm2", "Mousepad", "firefox", "determinator"})
        EXPECT_EQ(known(name), nullptr) << name;
}

TEST(TerminalShortcutsTest, TerminalsThatCopyBySelectingGetNoKeyForIt) {
    for (const auto* name : {"XTerm", "UXTerm", "Pterm", "mlterm", "terminology"}) {
        ASSERT_NE(known(name), nullptr) << name;
        EXPECT_EQ(known(name)->copy, std::nullopt) << name;
        EXPECT_EQ(known(name)->paste, (KeyChord{.keyCode = key::help, .flags = flag::shift})) << name;
    }
}

TEST(TerminalShortcutsTest, OtherCombinationsAreThatTerminalsOwn) {
    ASSERT_NE(known("URxvt"), nullptr);
    EXPECT_EQ(known("URxvt")->copy, (KeyChord{key::c, flag::control | flag::option, U'c'}));
    EXPECT_EQ(known("URxvt")->paste, (KeyChord{key::v, flag::control | flag::option, U'v'}));
}

TEST(TerminalShortcutsTest, TerminatorIsAskedByTheKeyThatNeverInterrupts) {
    ASSERT_NE(known("Terminator"), nullptr);
    EXPECT_EQ(known("Terminator")->copy, (KeyChord{.keyCode = key::help, .flags = flag::control}));
}

/// Whether a program in the terminal would get Control+C or Control+Z.
bool interrupts(const KeyChord& chord) {
    constexpr EventFlags all = flag::control | flag::shift | flag::option | flag::command;
    return (chord.flags & all) == flag::control && (chord.character == U'c' || chord.character == U'z');
}

TEST(TerminalShortcutsTest, NoTerminalGetsWhatInterruptsItsProgram) {
    std::set<std::string_view> names;
    for (const auto& one : terminal::known) {
        EXPECT_TRUE(names.insert(one.windowClass).second) << one.windowClass << " stands there twice";
        EXPECT_EQ(terminalOf(terminal::known, one.windowClass), &one) << one.windowClass;
        EXPECT_FALSE(interrupts(one.paste)) << one.windowClass;
        EXPECT_FALSE(one.copy && interrupts(*one.copy)) << one.windowClass;
    }
}

}  // namespace
}  // namespace trelvan
