#pragma once

struct _XDisplay;

namespace trelvan::desktop {

/// A part of the server's one screen, in pixels from its upper left corner.
struct MonitorPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Makes a part of the screen a monitor, as a desktop's display settings do, or changes the one of that name.
void setMonitor(_XDisplay* display, const char* name, const MonitorPlace& place, bool isMain);
void deleteMonitor(_XDisplay* display, const char* name);

}  // namespace trelvan::desktop
