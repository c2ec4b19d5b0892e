#include "UI/Panels/SystemPanel.hpp"

#include "UI/Components/Card.hpp"
#include "UI/Components/Segmented.hpp"

#include <QVBoxLayout>

namespace trelvan {

namespace {

/// The raw values of all cases; they are the same in both languages.
template <typename Enum>
std::vector<UiText> rawValueTexts() {
    std::vector<UiText> texts;
    for (const Enum value : allCases<Enum>()) texts.push_back(UiText::same(qtText(rawValue(value))));
    return texts;
}

}  // namespace

SystemPanel::SystemPanel(PanelHost& host) : settings_(host.services().settings) {
    constexpr TextPair themeLabel{"Theme", "Tema"};
    constexpr TextPair languageLabel{"Language", "Idioma"};
    Look& look = host.look();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(space::large);
    auto* general = new Card(look, TextPair{"General", "General"}, "paintpalette");
    theme_ = new Segmented(look, themeLabel, rawValueTexts<AppTheme>());
    theme_->onSelect = [this](int choice) { settings_.setTheme(static_cast<AppTheme>(choice)); };
    general->add(new FormRow(look, themeLabel, {}, theme_, FormRow::pickerLabelWidth));
    language_ = new Segmented(look, languageLabel, rawValueTexts<AppLanguage>());
    language_->onSelect = [this](int choice) { settings_.setLanguage(static_cast<AppLanguage>(choice)); };
    general->add(new FormRow(look, languageLabel, {}, language_, FormRow::pickerLabelWidth));
    column->addWidget(general);
    column->addStretch(1);
    changes_ = settings_.observe([this] { showSettings(); });
    showSettings();
}

void SystemPanel::showSettings() {
    theme_->select(static_cast<int>(settings_.theme()));
    language_->select(static_cast<int>(settings_.language()));
}

}  // namespace trelvan
