#include "UI/Components/Accessible.hpp"

#include <QAbstractButton>
#include <QAccessibleWidget>

namespace trelvan {

namespace {

/// A widget with a role of its own; a button can be pressed too.
class ComponentInterface final : public QAccessibleWidget {
  public:
    ComponentInterface(QWidget* widget, const AccessibleAs& component)
        : QAccessibleWidget(widget), component_(component) {}

    // Asked each time: the toolkit keeps this object from the first time on, which may be while the component
    // is still being made.
    [[nodiscard]] QAccessible::Role role() const override { return component_.accessibleRole(); }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const auto* found = button();
        if (found == nullptr || !found->isCheckable()) return state;
        state.checkable = true;
        state.checked = found->isChecked();
        if (role() == QAccessible::PageTab) {
            state.selectable = true;
            state.selected = found->isChecked();
        }
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (button() != nullptr && button()->isEnabled()) names.prepend(pressAction());
        return names;
    }

    void doAction(const QString& name) override {
        if (name == pressAction() && button() != nullptr) {
            button()->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    [[nodiscard]] QAbstractButton* button() const { return qobject_cast<QAbstractButton*>(widget()); }

    const AccessibleAs& component_;
};

QAccessibleInterface* interfaceOf(const QString& /*className*/, QObject* object) {
    const auto* component = dynamic_cast<AccessibleAs*>(object);
    auto* widget = qobject_cast<QWidget*>(object);
    if (component == nullptr || widget == nullptr) return nullptr;
    return new ComponentInterface(widget, *component);
}

}  // namespace

AccessibleAs::AccessibleAs() {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(&interfaceOf), true);
}

}  // namespace trelvan
