#include "Platform/Linux/Session/LinuxIdleInhibitor.hpp"

#include "Platform/Linux/Session/BusCall.hpp"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QVariant>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace trelvan {

namespace {

constexpr const char* who = "Trelvan";
constexpr const char* why = "Keep Awake";

/// How one service is asked, and what ends the inhibition it granted.
struct Inhibitor {
    const char* service;
    const char* path;
    const char* interface;
    std::vector<QVariant> arguments;
    /// Null: the grant is a descriptor, and closing it ends the inhibition.
    const char* release;
};

std::vector<Inhibitor> sessionInhibitors() {
    return {{"org.freedesktop.ScreenSaver",
             "/org/freedesktop/ScreenSaver",
             "org.freedesktop.ScreenSaver",
             {who, why},
             "UnInhibit"},
            {"org.freedesktop.PowerManagement",
             "/org/freedesktop/PowerManagement/Inhibit",
             "org.freedesktop.PowerManagement.Inhibit",
             {who, why},
             "UnInhibit"}};
}

Inhibitor loginInhibitor() {
    // Only the idle action: the user may still suspend the computer.
    return {"org.freedesktop.login1",
            "/org/freedesktop/login1",
            "org.freedesktop.login1.Manager",
            {"idle", who, why, "block"},
            nullptr};
}

/// A grant that is not waited for could not be given back.
constexpr std::chrono::minutes timeout{10};

QDBusMessage callTo(const Inhibitor& inhibitor, const char* method) {
    return QDBusMessage::createMethodCall(inhibitor.service, inhibitor.path, inhibitor.interface, method);
}

/// The inhibition of one service, for as long as this object lives.
class Inhibition {
  public:
    Inhibition(QDBusConnection bus, Inhibitor inhibitor)
        : shared_(std::make_shared<Shared>(std::move(bus), std::move(inhibitor))),
          watcher_(shared_->inhibitor.service, shared_->bus, QDBusServiceWatcher::WatchForOwnerChange) {
        QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &watcher_,
                         [this](const QString&, const QString&, const QString& owner) {
                             // What the former owner granted went with it.
                             shared_->grant.reset();
                             if (!owner.isEmpty()) ask(shared_);
                         });
        ask(shared_);
    }
    Inhibition(const Inhibition&) = delete;
    Inhibition& operator=(const Inhibition&) = delete;
    ~Inhibition() {
        shared_->isWanted = false;
        giveBack(*shared_);
    }

  private:
    /// Outlives the inhibition while an answer is on its way: what is granted too late is given back then.
    struct Shared {
        Shared(QDBusConnection onBus, Inhibitor how) : bus(std::move(onBus)), inhibitor(std::move(how)) {}
        QDBusConnection bus;
        Inhibitor inhibitor;
        std::optional<QVariant> grant;
        bool isWanted = true;
    };

    static void ask(const std::shared_ptr<Shared>& shared) {
        auto call = callTo(shared->inhibitor, "Inhibit");
        for (const auto& argument : shared->inhibitor.arguments) call << argument;
        callOverBus(shared->bus, call,
                    [shared](const BusAnswer& answer) {
                        const auto arguments = answer.reply.arguments();
                        if (answer.status != BusAnswer::Status::done || arguments.isEmpty()) return;
                        shared->grant = arguments.front();
                        if (!shared->isWanted) giveBack(*shared);
                    },
                    {.startsService = false, .timeout = timeout});
    }

    static void giveBack(Shared& shared) {
        // A descriptor is closed with the last copy of its value.
        const auto grant = std::exchange(shared.grant, std::nullopt);
        if (!grant || shared.inhibitor.release == nullptr) return;
        auto call = callTo(shared.inhibitor, shared.inhibitor.release);
        call << grant->toUInt();
        shared.bus.send(call);
    }

    std::shared_ptr<Shared> shared_;
    QDBusServiceWatcher watcher_;
};

class LinuxHold final : public IdleInhibitor::Hold {
  public:
    LinuxHold(const QDBusConnection& session, const QDBusConnection& system, const XConnection& server)
        : server_(server) {
        server_.suspendScreenSaver(true);
        for (auto& inhibitor : sessionInhibitors())
            inhibitions_.push_back(std::make_unique<Inhibition>(session, std::move(inhibitor)));
        inhibitions_.push_back(std::make_unique<Inhibition>(system, loginInhibitor()));
    }
    LinuxHold(const LinuxHold&) = delete;
    LinuxHold& operator=(const LinuxHold&) = delete;
    ~LinuxHold() override { server_.suspendScreenSaver(false); }

  private:
    const XConnection& server_;
    std::vector<std::unique_ptr<Inhibition>> inhibitions_;
};

}  // namespace

LinuxIdleInhibitor::LinuxIdleInhibitor(QDBusConnection session, QDBusConnection system,
                                       const XConnection& server)
    : session_(std::move(session)), system_(std::move(system)), server_(server) {}

std::unique_ptr<IdleInhibitor::Hold> LinuxIdleInhibitor::hold() {
    return std::make_unique<LinuxHold>(session_, system_, server_);
}

}  // namespace trelvan
