#pragma once

#include "Platform/SingleInstance.hpp"

#include <sys/types.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QVariantMap>
#include <memory>
#include <string>

namespace trelvan {

/// The program's name on the session bus: one for each display, for one user may have several on one bus.
[[nodiscard]] QString instanceName(const std::string& display);

/// The program on the session bus, by a name that a further start finds. Another user's call is refused,
/// should the bus let one through. Main thread.
class BusInstance final : public QObject, public SingleInstance, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.trelvan.Trelvan1")

  public:
    static constexpr const char* path = "/org/trelvan/Trelvan";
    static constexpr const char* interface = "org.trelvan.Trelvan1";

    BusInstance(QDBusConnection session, QString name, uid_t user = geteuid());
    ~BusInstance() override;

    [[nodiscard]] Reach serve(std::function<void()> onShow) override;

  public slots:  // NOLINT(readability-redundant-access-specifiers): the toolkit's word
    /// Asks to see the window.
    Q_SCRIPTABLE void Show();  // NOLINT(readability-identifier-naming): as it is on the bus

  private:
    QDBusConnection session_;
    QString name_;
    uid_t user_;
    std::function<void()> onShow_;
    bool isServing_ = false;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

/// Asks the program that serves the display to show its window, and waits for its answer. False where it
/// cannot be reached or refuses.
[[nodiscard]] bool askInstanceToShow(const QDBusConnection& session, const QString& name);

}  // namespace trelvan
