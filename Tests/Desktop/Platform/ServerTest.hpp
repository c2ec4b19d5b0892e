#pragma once

#include "Desktop/Harness/VirtualDesktop.hpp"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <string>

namespace trelvan::desktop {

/// A test of parts of the platform, in this process, against the server and the bus of a virtual desktop. One
/// desktop serves all tests of the run.
class ServerTest : public testing::Test {
  protected:
    void SetUp() override;

    static VirtualDesktop& desktop();
    [[nodiscard]] static std::string busAddress();
    /// A connection to the desktop's bus, the same at each call.
    [[nodiscard]] static QDBusConnection bus();
};

}  // namespace trelvan::desktop
