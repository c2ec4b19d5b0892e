#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/AcceleratorPrinting.hpp"
#include "Platform/Linux/Shell/DesktopShortcuts.hpp"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace trelvan {

namespace {

constexpr EventFlags super = flag::command;

// GNOME, Cinnamon, MATE

TEST(SettingsListShortcuts, GnomesValues_BecomeTheSymbolicTable) {
    constexpr auto text = R"(org.gnome.desktop.wm.keybindings show-desktop ['<Super>d', '<Control><Alt>d']
org.gnome.desktop.wm.keybindings switch-to-workspace-left ['<Super>Page_Up', '<Super><Alt>Left']
org.gnome.desktop.wm.keybindings switch-to-workspace-right ['<Super>Page_Down', '<Super><Alt>Right']
org.gnome.shell.keybindings toggle-overview ['<Super>s']
org.gnome.shell.keybindings toggle-application-view ['<Super>a']
org.gnome.shell.keybindings screenshot ['<Shift>Print']
org.gnome.shell.keybindings show-screenshot-ui ['Print']
org.gnome.settings-daemon.plugins.media-keys screensaver ['<Super>l']
org.gnome.settings-daemon.plugins.media-keys volume-step 6
org.gnome.mutter overlay-key 'Super_L'
org.freedesktop.ibus.panel.emoji hotkey ['<Super>period']
)";
    const ShortcutTable expected{
        {hotkey::missionControl, {XK_s, super}},       {hotkey::launchpad, {XK_a, super}},
        {hotkey::showDesktop, {XK_d, super}},          {hotkey::desktopLeft, {XK_Page_Up, super}},
        {hotkey::desktopRight, {XK_Page_Down, super}}, {hotkey::screenshotFull, {XK_Print, flag::shift}},
        {hotkey::screenshotArea, {XK_Print, 0}},       {hotkey::screenshotTool, {XK_Print, 0}},
        {hotkey::lockScreen, {XK_l, super}},
    };
    EXPECT_EQ(readSettingsList(text, DesktopKind::gnome), expected);
}

TEST(SettingsListShortcuts, InputMethodsEmojis_AreNotTheDesktops) {
    // Where a program does not use the input method, the key is typed into it.
    EXPECT_EQ(
        readSettingsList("org.freedesktop.ibus.panel.emoji hotkey ['<Super>period']\n", DesktopKind::gnome),
        ShortcutTable{});
    EXPECT_EQ(std::ranges::count(shortcutSchemas(DesktopKind::gnome), "org.freedesktop.ibus.panel.emoji"), 0);
}

TEST(SettingsListShortcuts, DisabledShortcut_LeavesTheNextPlaceOrNone) {
    constexpr auto text = R"(org.gnome.shell.keybindings toggle-overview @as []
org.gnome.mutter overlay-key 'Super_L'
org.gnome.desktop.wm.keybindings show-desktop ['']
org.gnome.desktop.wm.keybindings switch-to-workspace-left ['<Hyper>x', '<Control><Alt>Left']
)";
    const ShortcutTable expected{
        {hotkey::missionControl, {XK_Super_L, 0}},
        {hotkey::desktopLeft, {XK_Left, flag::control | flag::option}},
    };
    EXPECT_EQ(readSettingsList(text, DesktopKind::gnome), expected);
}

TEST(SettingsListShortcuts, ScreenshotsOfTheOlderGnome_ComeFromTheSettingsDaemon) {
    constexpr auto text = R"(org.gnome.settings-daemon.plugins.media-keys area-screenshot ['<Shift>Print']
org.gnome.settings-daemon.plugins.media-keys screenshot ['Print']
org.gnome.settings-daemon.plugins.media-keys screensaver '<Primary><Alt>l'
)";
    const ShortcutTable expected{
        {hotkey::screenshotFull, {XK_Print, 0}},
        {hotkey::screenshotArea, {XK_Print, flag::shift}},
        {hotkey::lockScreen, {XK_l, flag::control | flag::option}},
    };
    EXPECT_EQ(readSettingsList(text, DesktopKind::gnome), expected);
}

TEST(SettingsListShortcuts, CinnamonAndMate_HaveSchemasOfTheirOwn) {
    constexpr auto cinnamon =
        "org.cinnamon.desktop.keybindings.wm switch-to-workspace-left ['<Control><Alt>Left']\n"
        "org.cinnamon.desktop.keybindings.wm switch-to-workspace-down ['<Control><Alt>Down']\n";
    EXPECT_EQ(readSettingsList(cinnamon, DesktopKind::cinnamon),
              (ShortcutTable{{hotkey::desktopLeft, {XK_Left, flag::control | flag::option}},
                             {hotkey::missionControl, {XK_Down, flag::control | flag::option}}}));
    constexpr auto mate =
        "org.mate.Marco.global-keybindings show-desktop 'disabled'\n"
        "org.mate.Marco.global-keybindings panel-main-menu '<Alt>F1'\n";
    EXPECT_EQ(readSettingsList(mate, DesktopKind::mate),
              (ShortcutTable{{hotkey::launchpad, {XK_F1, flag::option}}}));
    EXPECT_EQ(readSettingsList(mate, DesktopKind::gnome), ShortcutTable{});
}

TEST(SettingsListShortcuts, BrokenLines_AreLeftOut) {
    EXPECT_EQ(readSettingsList("", DesktopKind::gnome), ShortcutTable{});
    EXPECT_EQ(readSettingsList("org.gnome.mutter\norg.gnome.mutter overlay-key\n\n"
                               "org.gnome.shell.keybindings toggle-overview ['<Super>s\n",
                               DesktopKind::gnome),
              (ShortcutTable{{hotkey::missionControl, {XK_s, super}}}));
}

TEST(SettingsListShortcuts, Schemas_AreNamedOnce) {
    EXPECT_EQ(shortcutSchemas(DesktopKind::cinnamon),
              (std::vector<std::string_view>{"org.cinnamon.desktop.keybindings.wm",
                                             "org.cinnamon.desktop.keybindings.media-keys"}));
    EXPECT_TRUE(shortcutSchemas(DesktopKind::kde).empty());
}

// KDE

TEST(KdeShortcuts, ActiveShortcuts_BecomeTheSymbolicTable) {
    constexpr auto text = R"([kwin]
_k_friendly_name=KWin
Expose=Ctrl+F9,Ctrl+F9,Toggle Present Windows (Current desktop)
ExposeClass=Ctrl+F7,Ctrl+F7,Toggle Present Windows (Window class)
Overview=Meta+W,Meta+W,Toggle Overview
Show Desktop=Meta+D,Meta+D,Peek at Desktop
Switch One Desktop to the Left=Meta+Ctrl+Left,Meta+Ctrl+Left,Switch One Desktop to the Left
Switch One Desktop to the Right=Meta+Ctrl+Right,Meta+Ctrl+Right,Switch One Desktop to the Right

[ksmserver]
Lock Session=Meta+L\tScreensaver,Meta+L\tScreensaver,Lock Session

[org.kde.plasma.emojier.desktop]
_k_friendly_name=Emoji Selector
_launch=Meta+Ctrl+E,Meta+.,Emoji Selector

[org.kde.spectacle.desktop]
FullScreenScreenShot=Shift+Print,Shift+Print,Capture Entire Desktop
RectangularRegionScreenShot=Meta+Shift+Print,Meta+Shift+Print,Capture Rectangular Region
_launch=Print,Print,Spectacle

[plasmashell]
activate application launcher=Meta\tAlt+F1,Meta\tAlt+F1,Activate Application Launcher
)";
    const ShortcutTable expected{
        {hotkey::missionControl, {XK_w, super}},
        {hotkey::appWindows, {XK_F7, flag::control}},
        {hotkey::launchpad, {XK_Super_L, 0}},
        {hotkey::showDesktop, {XK_d, super}},
        {hotkey::desktopLeft, {XK_Left, super | flag::control}},
        {hotkey::desktopRight, {XK_Right, super | flag::control}},
        {hotkey::lockScreen, {XK_l, super}},
        {hotkey::emojiPanel, {XK_e, super | flag::control}},
        {hotkey::screenshotFull, {XK_Print, flag::shift}},
        {hotkey::screenshotArea, {XK_Print, super | flag::shift}},
        {hotkey::screenshotTool, {XK_Print, 0}},
    };
    EXPECT_EQ(readKdeShortcuts(text), expected);
}

TEST(KdeShortcuts, DisabledShortcut_LeavesTheNextFunctionOrNone) {
    const auto table = readKdeShortcuts(
        "[kwin]\nOverview=none,Meta+W,Toggle Overview\nExposeAll=none\\tLaunch (C),Ctrl+F10,All\n"
        "Expose=Ctrl+F9,Ctrl+F9,Current\nShow Desktop=none,Meta+D,Peek\n"
        "[org.kde.spectacle.desktop]\n_launch=none,Print,Spectacle\n");
    EXPECT_EQ(table.at(hotkey::missionControl), (Accelerator{XK_F9, flag::control}));
    EXPECT_FALSE(table.contains(hotkey::showDesktop));
    EXPECT_FALSE(table.contains(hotkey::screenshotTool));
}

TEST(KdeShortcuts, CommaAndBackslashKeys_AreUnescaped) {
    const auto table =
        readKdeShortcuts("[kwin]\nOverview=Meta+\\\\,,Meta+W,Toggle\nShow Desktop=Meta+\\\\\\\\,none,x\n");
    EXPECT_EQ(table.at(hotkey::missionControl), (Accelerator{XK_comma, super}));
    EXPECT_EQ(table.at(hotkey::showDesktop), (Accelerator{XK_backslash, super}));
}

TEST(KdeShortcuts, ServicesOfPlasmaSix_StandInAGroupWithinAGroup) {
    const auto table = readKdeShortcuts("[services][org.kde.spectacle.desktop]\n_launch=F13\n");
    EXPECT_EQ(table.at(hotkey::screenshotTool), (Accelerator{XK_F13, 0}));
}

TEST(KdeShortcuts, ServicesThatNobodyChanged_HaveTheirStandardKeys) {
    const ShortcutTable expected{
        {hotkey::screenshotFull, {XK_Print, flag::shift}},
        {hotkey::screenshotArea, {XK_Print, super | flag::shift}},
        {hotkey::screenshotTool, {XK_Print, 0}},
        {hotkey::emojiPanel, {XK_period, super}},
    };
    EXPECT_EQ(readKdeShortcuts(""), expected);
    EXPECT_EQ(readKdeShortcuts("[other]\nOverview=Meta+W,,\n=\n[\n"), expected);
}

// XFCE

std::string channel(const std::string& commands, const std::string& windowManager) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-keyboard-shortcuts" version="1.0">
  <property name="commands" type="empty">)" +
           commands + R"(</property>
  <property name="xfwm4" type="empty">)" +
           windowManager + R"(</property>
  <property name="providers" type="array"><value type="string" value="xfwm4"/></property>
</channel>)";
}

TEST(XfceShortcuts, UsersShortcuts_BecomeTheSymbolicTable) {
    const auto xml = channel(
        R"(<property name="default" type="empty"><property name="&lt;Alt&gt;F1" type="empty"/></property>
           <property name="custom" type="empty">
             <property name="&lt;Alt&gt;F2" type="string" value="xfce4-appfinder --collapsed"/>
             <property name="&lt;Alt&gt;F3" type="string" value="xfce4-appfinder"/>
             <property name="&lt;Primary&gt;&lt;Alt&gt;l" type="string" value="/usr/bin/xflock4"/>
             <property name="Print" type="string" value="xfce4-screenshooter"/>
             <property name="&lt;Alt&gt;Print" type="string" value="xfce4-screenshooter -w"/>
             <property name="&lt;Shift&gt;Print" type="string" value="xfce4-screenshooter -r"/>
             <property name="override" type="bool" value="true"/>
           </property>)",
        R"(<property name="custom" type="empty">
             <property name="&lt;Primary&gt;&lt;Alt&gt;Left" type="string" value="left_workspace_key"/>
             <property name="&lt;Primary&gt;&lt;Alt&gt;Right" type="string" value="right_workspace_key"/>
             <property name="&lt;Primary&gt;&lt;Alt&gt;d" type="string" value="show_desktop_key"/>
             <property name="&lt;Alt&gt;F4" type="string" value="close_window_key"/>
             <property name="override" type="bool" value="true"/>
           </property>)");
    const EventFlags both = flag::control | flag::option;
    const ShortcutTable expected{
        {hotkey::launchpad, {XK_F3, flag::option}}, {hotkey::lockScreen, {XK_l, both}},
        {hotkey::screenshotTool, {XK_Print, 0}},    {hotkey::screenshotArea, {XK_Print, flag::shift}},
        {hotkey::desktopLeft, {XK_Left, both}},     {hotkey::desktopRight, {XK_Right, both}},
        {hotkey::showDesktop, {XK_d, both}},
    };
    EXPECT_EQ(readXfceShortcuts(xml), expected);
}

TEST(XfceShortcuts, WithoutTheUsersOwn_TheDeliveredOnesCount) {
    const auto xml = channel(
        R"(<property name="default" type="empty">
             <property name="&lt;Super&gt;p" type="string" value="xfce4-appfinder"/></property>)",
        R"(<property name="default" type="empty">
             <property name="&lt;Super&gt;h" type="string" value="left_workspace_key"/></property>)");
    EXPECT_EQ(readXfceShortcuts(xml),
              (ShortcutTable{{hotkey::launchpad, {XK_p, super}}, {hotkey::desktopLeft, {XK_h, super}}}));
}

TEST(XfceShortcuts, OverrideWithNothing_LeavesNoShortcut) {
    const auto xml = channel(
        R"(<property name="default" type="empty">
             <property name="&lt;Super&gt;p" type="string" value="xfce4-appfinder"/></property>
           <property name="custom" type="empty"><property name="override" type="bool" value="true"/></property>)",
        "");
    EXPECT_EQ(readXfceShortcuts(xml), ShortcutTable{});
}

TEST(XfceShortcuts, BrokenFile_CountsUpToItsFault) {
    EXPECT_EQ(readXfceShortcuts(""), ShortcutTable{});
    auto xml = channel("", R"(<property name="custom" type="empty">
             <property name="&lt;Super&gt;h" type="string" value="left_workspace_key"/>)");
    EXPECT_EQ(readXfceShortcuts(xml), (ShortcutTable{{hotkey::desktopLeft, {XK_h, super}}}));
}

// Which desktop

TEST(CurrentDesktop, NamesInTheEnvironment_TellTheDesktop) {
    EXPECT_EQ(desktopKind("GNOME"), DesktopKind::gnome);
    EXPECT_EQ(desktopKind("ubuntu:GNOME"), DesktopKind::gnome);
    EXPECT_EQ(desktopKind("Budgie:GNOME"), DesktopKind::gnome);
    EXPECT_EQ(desktopKind("KDE"), DesktopKind::kde);
    EXPECT_EQ(desktopKind("XFCE"), DesktopKind::xfce);
    EXPECT_EQ(desktopKind("X-Cinnamon"), DesktopKind::cinnamon);
    EXPECT_EQ(desktopKind("MATE"), DesktopKind::mate);
    EXPECT_EQ(desktopKind(""), DesktopKind::other);
    EXPECT_EQ(desktopKind("openbox"), DesktopKind::other);
    EXPECT_EQ(desktopKind("::i3"), DesktopKind::other);
}

}  // namespace
}  // namespace trelvan
