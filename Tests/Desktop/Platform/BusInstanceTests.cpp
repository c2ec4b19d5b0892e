#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Session/BusInstance.hpp"

#include <QDBusPendingCall>
#include <QDBusPendingReply>

namespace trelvan::desktop {
namespace {

const QString name = instanceName(":7");

class BusInstanceTest : public ServerTest {
  protected:
    /// Asks over a connection of its own, as another process does; the error's name, empty for none.
    static QString ask() {
        const auto caller = QDBusConnection::connectToBus(QString::fromStdString(busAddress()), "caller");
        const QDBusPendingReply<> reply = caller.asyncCall(
            QDBusMessage::createMethodCall(name, BusInstance::path, BusInstance::interface, "Show"));
        EXPECT_TRUE(runUntil([&] { return reply.isFinished(); }));
        const QString error = reply.isError() ? reply.error().name() : QString();
        QDBusConnection::disconnectFromBus("caller");
        return error;
    }

    int shown = 0;
};

TEST_F(BusInstanceTest, FurtherStartOfTheSameUserIsServed) {
    BusInstance instance(bus(), name);
    ASSERT_EQ(instance.serve([this] { ++shown; }), SingleInstance::Reach::reachable);
    EXPECT_EQ(ask(), "");
    EXPECT_EQ(shown, 1);
}

TEST_F(BusInstanceTest, AnotherUsersCallIsRefused) {
    BusInstance instance(bus(), name, geteuid() + 1);
    ASSERT_EQ(instance.serve([this] { ++shown; }), SingleInstance::Reach::reachable);
    EXPECT_EQ(ask(), "org.freedesktop.DBus.Error.AccessDenied");
    EXPECT_EQ(shown, 0);
}

TEST_F(BusInstanceTest, NameIsFreeAfterTheProgramEnded) {
    {
        BusInstance instance(bus(), name);
        ASSERT_EQ(instance.serve([] {}), SingleInstance::Reach::reachable);
    }
    EXPECT_NE(ask(), "");
    BusInstance next(bus(), name);
    EXPECT_EQ(next.serve([] {}), SingleInstance::Reach::reachable);
}

TEST_F(BusInstanceTest, NameOfAnotherProgramIsNotTaken) {
    auto other = QDBusConnection::connectToBus(QString::fromStdString(busAddress()), "other");
    ASSERT_TRUE(other.registerService(name));
    BusInstance instance(bus(), name);
    EXPECT_EQ(instance.serve([] {}), SingleInstance::Reach::taken);
    other.unregisterService(name);
    QDBusConnection::disconnectFromBus("other");
}

TEST_F(BusInstanceTest, WithoutABusNobodyIsReached) {
    const auto none = QDBusConnection::connectToBus("unix:path=/nonexistent/bus", "none");
    BusInstance instance(none, name);
    EXPECT_EQ(instance.serve([] {}), SingleInstance::Reach::noBus);
    EXPECT_FALSE(askInstanceToShow(none, name));
}

TEST(InstanceNameTest, EachDisplayHasItsOwnAndScreensOfOneShareIt) {
    EXPECT_EQ(instanceName(":0"), instanceName(":0.1"));
    EXPECT_NE(instanceName(":0"), instanceName(":10"));
    EXPECT_EQ(instanceName("host.example:1.0"), "org.trelvan.Trelvan.displayhost_example_1");
}

}  // namespace
}  // namespace trelvan::desktop
