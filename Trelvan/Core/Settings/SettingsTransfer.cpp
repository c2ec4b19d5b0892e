#include "Core/Settings/SettingsTransfer.hpp"

namespace trelvan {

AppSettingsSnapshot SettingsTransfer::current() const {
    AppSettingsSnapshot snapshot;
    for (const auto& row : setting::all) {
        const auto* const setting = row.isInBackup() ? settings_.at(row) : nullptr;
        if (setting != nullptr) snapshot.set(row, setting->exported());
    }
    return snapshot;
}

void SettingsTransfer::apply(const AppSettingsSnapshot& snapshot) {
    for (const auto& row : setting::all) {
        auto* const setting = row.isInBackup() ? settings_.at(row) : nullptr;
        if (setting == nullptr) continue;
        setting->take(snapshot[row]);
        if (row.keeping == Keeping::onRequest) setting->save();
    }
}

}  // namespace trelvan
