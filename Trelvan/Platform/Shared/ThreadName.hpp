#pragma once

#include <pthread.h>

namespace trelvan {

/// Names the calling thread for debuggers and process lists; at most 15 characters.
inline void nameThread(const char* name) {
#ifdef __APPLE__
    pthread_setname_np(name);
#else
    pthread_setname_np(pthread_self(), name);
#endif
}

}  // namespace trelvan
