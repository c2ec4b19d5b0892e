#include "UI/ShortcutText.hpp"

#include "Platform/Quartz.hpp"

#include <array>
#include <utility>

namespace trelvan {

namespace {

/// By place on the keyboard, under the names that an American keyboard prints on them.
constexpr std::array<std::pair<std::uint16_t, const char*>, 73> keyNames{{
    {0, "A"},    {1, "S"},    {2, "D"},     {3, "F"},     {4, "H"},     {5, "G"},   {6, "Z"},   {7, "X"},
    {8, "C"},    {9, "V"},    {11, "B"},    {12, "Q"},    {13, "W"},    {14, "E"},  {15, "R"},  {16, "Y"},
    {17, "T"},   {18, "1"},   {19, "2"},    {20, "3"},    {21, "4"},    {22, "6"},  {23, "5"},  {24, "="},
    {25, "9"},   {26, "7"},   {27, "-"},    {28, "8"},    {29, "0"},    {30, "]"},  {31, "O"},  {32, "U"},
    {33, "["},   {34, "I"},   {35, "P"},    {36, "↩"},    {37, "L"},    {38, "J"},  {39, "'"},  {40, "K"},
    {41, ";"},   {42, "\\"},  {43, ","},    {44, "/"},    {45, "N"},    {46, "M"},  {47, "."},  {48, "⇥"},
    {49, "␣"},   {50, "`"},   {51, "⌫"},    {53, "⎋"},    {96, "F5"},   {97, "F6"}, {98, "F7"}, {99, "F3"},
    {100, "F8"}, {101, "F9"}, {103, "F11"}, {109, "F10"}, {111, "F12"}, {115, "↖"}, {116, "⇞"}, {117, "⌦"},
    {118, "F4"}, {119, "↘"},  {120, "F2"},  {121, "⇟"},   {122, "F1"},  {123, "←"}, {124, "→"}, {125, "↓"},
    {126, "↑"},
}};

}  // namespace

QString shortcutText(const CustomShortcut& shortcut) {
    if (!shortcut.displayString.empty()) return QString::fromStdString(shortcut.displayString);
    if (shortcut.isEmpty()) return {};
    QString text;
    const auto add = [&](EventFlags modifier, const char* sign) {
        if ((shortcut.modifiersRawValue & modifier) != 0) text += QString::fromUtf8(sign);
    };
    add(flag::control, "⌃");
    add(flag::option, "⌥");
    add(flag::shift, "⇧");
    add(flag::command, "⌘");
    add(flag::function, "fn");
    for (const auto& [code, name] : keyNames) {
        if (code == shortcut.keyCode) return text + QString::fromUtf8(name);
    }
    return {};
}

}  // namespace trelvan
