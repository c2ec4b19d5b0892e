#include "Desktop/Platform/ServerTest.hpp"

#include <QCoreApplication>
#include <cstdlib>
#include <memory>

namespace trelvan::desktop {
namespace {

std::unique_ptr<VirtualDesktop>& shared() {
    static std::unique_ptr<VirtualDesktop> desktop;
    return desktop;
}

/// The desktop of this run, and its environment as this process's own.
class ServerEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        shared() = std::make_unique<VirtualDesktop>();
        for (const auto& [name, value] : shared()->environment()) setenv(name.c_str(), value.c_str(), 1);
    }
    void TearDown() override { shared().reset(); }
};

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
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    testing::AddGlobalTestEnvironment(new trelvan::desktop::ServerEnvironment);
    return RUN_ALL_TESTS();
}
