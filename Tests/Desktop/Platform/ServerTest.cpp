#include "Desktop/Platform/ServerTest.hpp"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace trelvan::desktop {
namespace {

std::unique_ptr<VirtualDesktop>& shared() {
    static std::unique_ptr<VirtualDesktop> desktop;
    return desktop;
}

}  // namespace

void ServerTest::SetUp() {
    ASSERT_TRUE(desktop().isAlive());
    desktop().reset();
}

VirtualDesktop& ServerTest::desktop() {
    return *shared();
}

std::string ServerTest::busAddress() {
    return desktop().environment().at("DBUS_SESSION_BUS_ADDRESS");
}

QDBusConnection ServerTest::bus() {
    return QDBusConnection::connectToBus(QString::fromStdString(busAddress()), "tested");
}

}  // namespace trelvan::desktop

int main(int argc, char** argv) {
    using trelvan::desktop::VirtualDesktop;
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    // The desktop of this run, and its environment as this process's own.
    auto& desktop = trelvan::desktop::shared();
    desktop = std::make_unique<VirtualDesktop>();
    for (const auto& [name, value] : desktop->environment()) setenv(name.c_str(), value.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    int status = 1;
    {
        const QGuiApplication application(argc, argv);
        QGuiApplication::setQuitOnLastWindowClosed(false);
        status = RUN_ALL_TESTS();
    }
    desktop.reset();
    return status;
}
