/// Writes what the README's table of actions says of each action, a line for each: its names and, where it is
/// one combination, that of macOS and of Linux; else nothing. Between them stand tabs.
/// scripts/update-action-table reads it.
#include "Core/ActionDescription.hpp"
#include "Core/Model/ActionCatalogue.hpp"

#include <cstdio>
#include <string>

namespace {

using namespace trelvan;

std::string names(const ActionRow& row) {
    std::string text(row.rawValue);
    if (row.englishLabel != row.rawValue) text.append(" (").append(row.englishLabel).append(")");
    return text;
}

std::string combinationBy(const ActionRow& row, ShortcutConvention convention) {
    const auto* const combination = catalogueCombination(row.action);
    if (combination == nullptr) return {};
    auto text = describeChord(combination->by(convention), AppLanguage::english);
    // What people call the key there.
    constexpr std::string_view command = "Command";
    const auto place =
        convention == ShortcutConvention::linuxDesktop ? text.find(command) : std::string::npos;
    if (place != std::string::npos) text.replace(place, command.size(), "Super");
    return text;
}

}  // namespace

int main() {
    for (const auto& row : actionCatalogue()) {
        std::printf("%s\t%s\t%s\n", names(row).c_str(), combinationBy(row, ShortcutConvention::macOS).c_str(),
                    combinationBy(row, ShortcutConvention::linuxDesktop).c_str());
    }
    return 0;
}
