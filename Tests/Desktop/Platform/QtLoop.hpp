#pragma once

#include "Desktop/Harness/Wait.hpp"

#include <QCoreApplication>
#include <functional>

namespace trelvan::desktop {

/// Runs Qt's event loop until `done` answers true or the bound has passed. The last answer.
inline bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds bound = timeout) {
    return waitUntil(
        [&] {
            QCoreApplication::processEvents();
            return done();
        },
        bound);
}

}  // namespace trelvan::desktop
