#pragma once

#include "UI/Components/Buttons.hpp"
#include "UI/Panels/PanelHost.hpp"

#include <QWidget>
#include <optional>

namespace trelvan {

/// The choice of the active profile, and what can be done with profiles.
class ProfileBar final : public QWidget {
  public:
    explicit ProfileBar(PanelHost& host, QWidget* parent = nullptr);

    /// Shows the store as it is now.
    void refresh();

    [[nodiscard]] TextButton& chooser() { return *chooser_; }
    [[nodiscard]] IconButton& actions() { return *actions_; }
    /// The profile that the open confirmation would delete.
    [[nodiscard]] const std::optional<Uuid>& pendingDeleteProfileID() const {
        return pendingDeleteProfileID_;
    }

  private:
    void openProfiles();
    void openActions();
    void askForNewProfile();
    void askForNewName();
    void duplicateProfile();
    void tellOfNew(const TrackballProfile& made);
    void askToDelete();
    [[nodiscard]] static UiText quoted(std::string_view name, TextPair before, TextPair after);

    PanelHost& host_;
    ProfileManager& profiles_;
    TextButton* chooser_;
    IconButton* actions_;
    std::optional<Uuid> pendingDeleteProfileID_;
};

}  // namespace trelvan
