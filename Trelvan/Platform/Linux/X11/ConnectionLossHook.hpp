#pragma once

#include <functional>

namespace trelvan {

/// What still has to be done when the process ends at once because its X connection broke, such as writing
/// settings out. Set and performed on the main thread only.
void setConnectionLossHook(std::function<void()> hook);

/// Does it, once; nothing on any other thread than the one that set it. Whether there was something to do.
bool runConnectionLossHook();

}  // namespace trelvan
