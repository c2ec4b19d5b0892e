#pragma once

#include "Platform/Appearance.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <memory>

namespace trelvan {

/// The desktop's preferences as its settings portal tells them, kept up to date by its signals, and whether a
/// compositing manager runs. Without a portal there are none. Main thread.
class LinuxAppearance final : public QObject, public Appearance {
    Q_OBJECT

  public:
    LinuxAppearance(XConnection& connection, QDBusConnection session);

    [[nodiscard]] bool prefersDark() const override { return prefersDark_; }
    [[nodiscard]] bool reducesMotion() const override { return reducesMotion_; }
    [[nodiscard]] bool composites() const override;
    [[nodiscard]] std::optional<Rgb> accentColor() const override { return accentColor_; }

  private slots:
    void settingChanged(const QDBusMessage& signal);

  private:
    void ask(const char* group, const char* key);
    void note(const QString& group, const QString& key, const QVariant& value);

    XConnection& connection_;
    QDBusConnection session_;
    bool prefersDark_ = false;
    bool reducesMotion_ = false;
    std::optional<Rgb> accentColor_;
    /// Answers that come after this object find it gone.
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trelvan
