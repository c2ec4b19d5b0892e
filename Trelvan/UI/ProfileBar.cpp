#include "UI/ProfileBar.hpp"

#include "UI/Components/TextField.hpp"

#include <QHBoxLayout>
#include <string>

namespace trelvan {

namespace {

constexpr TextPair newProfile{"New profile", "Nuevo perfil"};
constexpr TextPair renameProfile{"Rename profile…", "Renombrar perfil…"};
constexpr TextPair renameTitle{"Rename profile", "Renombrar perfil"};
constexpr TextPair duplicateProfileText{"Duplicate profile", "Duplicar perfil"};
constexpr TextPair deleteProfileText{"Delete profile", "Eliminar perfil"};
constexpr TextPair profileName{"Profile name", "Nombre del perfil"};
constexpr TextPair cancelText{"Cancel", "Cancelar"};
constexpr TextPair createText{"Create", "Crear"};
constexpr TextPair saveText{"Save", "Guardar"};
constexpr TextPair removeText{"Delete", "Eliminar"};
constexpr TextPair switchToIt{"Switch to it", "Cambiar a él"};
constexpr TextPair chooserName{"Profile", "Perfil"};
constexpr TextPair actionsName{"Profile actions", "Acciones del perfil"};

constexpr int longestName = 170;

std::string textOf(const QLineEdit& field) {
    return field.text().toStdString();
}

}  // namespace

ProfileBar::ProfileBar(PanelHost& host, QWidget* parent)
    : QWidget(parent), host_(host), profiles_(host.services().profiles) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(space::small / 2);
    chooser_ = new TextButton(host.look(), {});
    chooser_->setTrailingSymbol("chevron.down");
    chooser_->setLongestText(longestName);
    chooser_->onClick = [this] { openProfiles(); };
    row->addWidget(chooser_);
    actions_ = new IconButton(host.look(), actionsName, "ellipsis");
    actions_->onClick = [this] { openActions(); };
    row->addWidget(actions_);
    refresh();
}

void ProfileBar::refresh() {
    const QString name = qtText(profiles_.activeProfile().name);
    chooser_->setText(UiText::same(name));
    chooser_->setAccessibleDescription(host_.look().text(chooserName));
}

UiText ProfileBar::quoted(std::string_view name, TextPair before, TextPair after) {
    return {qtText(before.english) + qtText(name) + qtText(after.english),
            qtText(before.spanish) + qtText(name) + qtText(after.spanish)};
}

void ProfileBar::openProfiles() {
    std::vector<Popover::Item> items;
    const Uuid active = profiles_.activeProfile().id;
    for (const TrackballProfile& profile : profiles_.profiles.get()) {
        items.push_back({.text = UiText::same(qtText(profile.name)),
                         .symbol = profile.id == active ? "checkmark" : "",
                         .onChoose = [this, id = profile.id] {
                             for (const TrackballProfile& each : profiles_.profiles.get()) {
                                 if (each.id == id) return profiles_.setActive(TrackballProfile(each));
                             }
                         }});
    }
    host_.openMenu(chooser_, chooserName, std::move(items));
}

void ProfileBar::openActions() {
    // The store keeps its last profile.
    const bool canDelete = profiles_.profiles.get().size() > 1;
    host_.openMenu(
        actions_, actionsName,
        {{.text = newProfile, .symbol = "plus", .onChoose = [this] { askForNewProfile(); }},
         {.text = renameProfile, .symbol = "pencil", .onChoose = [this] { askForNewName(); }},
         {.text = duplicateProfileText, .symbol = "doc.on.doc", .onChoose = [this] { duplicateProfile(); }},
         {.text = deleteProfileText,
          .symbol = "trash",
          .isEnabled = canDelete,
          .isDangerous = true,
          .beginsGroup = true,
          .onChoose = [this] { askToDelete(); }}});
}

void ProfileBar::askForNewProfile() {
    auto* field = new TextField(host_.look(), profileName, profileName);
    Sheet& sheet =
        host_.ask({.title = newProfile,
                   .message = {},
                   .cancel = cancelText,
                   .confirm = createText,
                   .body = field,
                   .onConfirm = [this, field] { tellOfNew(profiles_.createProfile(textOf(*field))); }});
    const auto follow = [&sheet, field] {
        sheet.confirmButton().setEnabled(!field->text().trimmed().isEmpty());
    };
    QObject::connect(field, &QLineEdit::textChanged, &sheet, follow);
    follow();
}

void ProfileBar::askForNewName() {
    auto* field = new TextField(host_.look(), profileName, profileName);
    field->setText(qtText(profiles_.activeProfile().name));
    field->selectAll();
    Sheet& sheet = host_.ask({.title = renameTitle,
                              .message = {},
                              .cancel = cancelText,
                              .confirm = saveText,
                              .body = field,
                              .onConfirm = [this, field, id = profiles_.activeProfile().id] {
                                  profiles_.rename(id, textOf(*field));
                              }});
    // A name of nothing would be refused by the store.
    const auto follow = [&sheet, field] {
        sheet.confirmButton().setEnabled(!field->text().trimmed().isEmpty());
    };
    QObject::connect(field, &QLineEdit::textChanged, &sheet, follow);
    follow();
}

void ProfileBar::duplicateProfile() {
    tellOfNew(profiles_.duplicate(TrackballProfile(profiles_.activeProfile())));
}

void ProfileBar::tellOfNew(const TrackballProfile& made) {
    host_.tell(quoted(made.name, {"Profile '", "Perfil '"}, {"' created.", "' creado."}), switchToIt,
               [this, made] { profiles_.setActive(made); });
}

void ProfileBar::askToDelete() {
    const TrackballProfile& active = profiles_.activeProfile();
    Sheet& sheet = host_.ask({.title = deleteProfileText,
                              .message = quoted(active.name, {"Profile '", "Se eliminará el perfil '"},
                                                {"' will be deleted. This action cannot be undone.",
                                                 "'. Esta acción no se puede deshacer."}),
                              .cancel = cancelText,
                              .confirm = removeText,
                              .isDangerous = true,
                              .onConfirm = [this] {
                                  if (const auto pending = pendingDeleteProfileID_)
                                      profiles_.deleteProfile(*pending);
                              }});
    pendingDeleteProfileID_ = active.id;
    const auto close = sheet.onClosed;
    sheet.onClosed = [this, close] {
        pendingDeleteProfileID_.reset();
        if (close) close();
    };
}

}  // namespace trelvan
