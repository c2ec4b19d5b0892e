#include "Desktop/Platform/QtLoop.hpp"
#include "Desktop/Platform/RecordingService.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Session/LinuxIdleInhibitor.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <QDBusUnixFileDescriptor>
#include <optional>

namespace trelvan::desktop {
namespace {

constexpr auto screenSaver = "org.freedesktop.ScreenSaver";
constexpr auto powerManagement = "org.freedesktop.PowerManagement";
constexpr auto loginManager = "org.freedesktop.login1";

using Methods = std::vector<std::string>;

class LinuxIdleInhibitorTest : public ServerTest {
  protected:
    static QVariantList cookie(const RecordingService::Call& call) {
        return call.method == "Inhibit" ? QVariantList{42U} : QVariantList();
    }
    static bool answers(const RecordingService& service, std::size_t calls) {
        return runUntil([&] { return service.calls().size() >= calls; });
    }

    std::unique_ptr<XConnection> server = std::get<std::unique_ptr<XConnection>>(XConnection::open());
    LinuxIdleInhibitor inhibitor{bus(), bus(), *server};
};

TEST_F(LinuxIdleInhibitorTest, HoldInhibitsAndItsEndGivesBackWhatWasGranted) {
    for (const auto* name : {screenSaver, powerManagement}) {
        const RecordingService service(busAddress(), name, cookie);
        ASSERT_TRUE(service.isServing());
        auto hold = inhibitor.hold();
        ASSERT_TRUE(answers(service, 1));
        EXPECT_EQ(service.calls().front().arguments, (QVariantList{"Trelvan", "Keep Awake"}));
        // The grant is on its way; what ends the hold before it comes is another test's matter.
        runUntil([] { return false; }, std::chrono::milliseconds{50});
        hold.reset();
        ASSERT_TRUE(answers(service, 2));
        EXPECT_EQ(service.methods(), (Methods{"Inhibit", "UnInhibit"})) << name;
        EXPECT_EQ(service.calls().back().arguments, (QVariantList{42U}));
    }
}

TEST_F(LinuxIdleInhibitorTest, WhatIsGrantedTooLateIsGivenBack) {
    const RecordingService service(busAddress(), screenSaver, cookie);
    inhibitor.hold().reset();
    ASSERT_TRUE(answers(service, 2));
    EXPECT_EQ(service.methods(), (Methods{"Inhibit", "UnInhibit"}));
}

TEST_F(LinuxIdleInhibitorTest, ServiceThatComesBackIsAskedAgain) {
    std::optional<RecordingService> service(std::in_place, busAddress(), screenSaver, cookie);
    const auto hold = inhibitor.hold();
    ASSERT_TRUE(answers(*service, 1));
    service.emplace(busAddress(), screenSaver, cookie);
    EXPECT_TRUE(answers(*service, 1));
    EXPECT_EQ(service->methods(), Methods{"Inhibit"});
}

TEST_F(LinuxIdleInhibitorTest, ServiceThatComesLaterIsAskedThen) {
    const auto hold = inhibitor.hold();
    const RecordingService service(busAddress(), screenSaver, cookie);
    EXPECT_TRUE(answers(service, 1));
}

TEST_F(LinuxIdleInhibitorTest, LoginManagersDescriptorIsHeldAndClosed) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    const RecordingService service(busAddress(), loginManager,
                                   [&](const RecordingService::Call&) -> QVariantList {
                                       const QDBusUnixFileDescriptor grant(ends[1]);
                                       close(ends[1]);
                                       return {QVariant::fromValue(grant)};
                                   });
    // The reading end of the pipe ends when nobody holds the other any more.
    const auto isHeld = [&] {
        char byte = 0;
        return read(ends[0], &byte, 1) != 0;
    };
    auto hold = inhibitor.hold();
    ASSERT_TRUE(answers(service, 1));
    EXPECT_EQ(service.calls().front().arguments, (QVariantList{"idle", "Trelvan", "Keep Awake", "block"}));
    runUntil([] { return false; }, std::chrono::milliseconds{50});
    EXPECT_TRUE(isHeld());
    hold.reset();
    EXPECT_TRUE(runUntil([&] { return !isHeld(); }));
    close(ends[0]);
}

TEST_F(LinuxIdleInhibitorTest, ScreenSaverOfTheServerWaitsForTheLastHold) {
    const auto observer = std::get<std::unique_ptr<XConnection>>(XConnection::open());
    const auto setScreenSaver = [&](int seconds) {
        XSetScreenSaver(observer->display(), seconds, 0, DontPreferBlanking, AllowExposures);
        XResetScreenSaver(observer->display());
        XSync(observer->display(), x11::no);
    };
    const auto info = [&] {
        XScreenSaverInfo result{};
        XScreenSaverQueryInfo(observer->display(), observer->root(), &result);
        return result;
    };
    auto first = inhibitor.hold();
    auto second = inhibitor.hold();
    setScreenSaver(1);
    first.reset();
    EXPECT_TRUE(runUntil([&] { return info().idle > 2000; }));
    EXPECT_NE(info().state, ScreenSaverOn);
    second.reset();
    EXPECT_TRUE(runUntil([&] { return info().state == ScreenSaverOn; }));
    setScreenSaver(0);
}

TEST_F(LinuxIdleInhibitorTest, ScreenSaverOfTheServerComesBackWithTheEndOfTheConnection) {
    const auto observer = std::get<std::unique_ptr<XConnection>>(XConnection::open());
    auto gone = std::get<std::unique_ptr<XConnection>>(XConnection::open());
    gone->suspendScreenSaver(true);
    XSetScreenSaver(observer->display(), 1, 0, DontPreferBlanking, AllowExposures);
    XSync(observer->display(), x11::no);
    gone.reset();
    EXPECT_TRUE(runUntil([&] {
        XScreenSaverInfo info{};
        XScreenSaverQueryInfo(observer->display(), observer->root(), &info);
        return info.state == ScreenSaverOn;
    }));
    XSetScreenSaver(observer->display(), 0, 0, DontPreferBlanking, AllowExposures);
    XResetScreenSaver(observer->display());
    XSync(observer->display(), x11::no);
}

TEST_F(LinuxIdleInhibitorTest, DesktopWithoutInhibitorsIsNoFailure) {
    auto hold = inhibitor.hold();
    EXPECT_NE(hold, nullptr);
    hold.reset();
}

}  // namespace
}  // namespace trelvan::desktop
