#pragma once

#include "Platform/Linux/XTest/PressedState.hpp"

struct _XDisplay;

namespace trelvan {

/// Releases what is owed as far as XTEST really holds it, gives lent places back, and waits until the server
/// has done it. A key that only the user holds stays down.
void release(_XDisplay* display, const PendingReleases& owed);

}  // namespace trelvan
