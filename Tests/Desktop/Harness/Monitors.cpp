#include "Desktop/Harness/Monitors.hpp"

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

namespace trelvan::desktop {

void setMonitor(_XDisplay* display, const char* name, const MonitorPlace& place, bool isMain) {
    const Window root = DefaultRootWindow(display);
    XRRMonitorInfo* monitor = XRRAllocateMonitor(display, isMain ? 1 : 0);
    if (isMain) {
        // An output that no monitor has makes one of its own, which would be the main one.
        XRRScreenResources* resources = XRRGetScreenResourcesCurrent(display, root);
        monitor->outputs[0] = resources->outputs[0];
        XRRFreeScreenResources(resources);
    }
    monitor->name = XInternAtom(display, name, False);
    monitor->primary = isMain ? True : False;
    monitor->x = place.x;
    monitor->y = place.y;
    monitor->width = place.width;
    monitor->height = place.height;
    monitor->mwidth = place.width / 4;
    monitor->mheight = place.height / 4;
    XRRSetMonitor(display, root, monitor);
    XRRFreeMonitors(monitor);
    XSync(display, False);
}

void deleteMonitor(_XDisplay* display, const char* name) {
    XRRDeleteMonitor(display, DefaultRootWindow(display), XInternAtom(display, name, False));
    XSync(display, False);
}

}  // namespace trelvan::desktop
