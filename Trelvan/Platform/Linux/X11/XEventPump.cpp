#include "Platform/Linux/X11/XEventPump.hpp"

#include "Platform/Linux/X11/X11.hpp"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>

namespace trelvan {

/// How the pump hangs on Qt's loop.
struct XEventPump::Wiring {
    Wiring(XEventPump& pump, int descriptor) : notifier(descriptor, QSocketNotifier::Read) {
        QObject::connect(&notifier, &QSocketNotifier::activated, &context, [&pump] { pump.drain(); });
        // A request that waits for its reply moves events into Xlib's queue, where no descriptor tells of
        // them.
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                         &context, [&pump] { pump.drainLeftovers(); });
    }

    QObject context;
    QSocketNotifier notifier;
};

XEventPump::XEventPump(XConnection& connection)
    : connection_(connection), wiring_(std::make_unique<Wiring>(*this, connection.descriptor())) {
    // One choice of core events for all handlers: each new one would replace the last.
    XSelectInput(connection.display(), connection.root(), PropertyChangeMask | StructureNotifyMask);
}

XEventPump::~XEventPump() = default;

int XEventPump::waiting() const {
    return XEventsQueued(connection_.display(), QueuedAlready);
}

void XEventPump::drainLeftovers() {
    // First the flush: it reads as well, and what it brought along would wait for the loop's next reason to
    // wake.
    XFlush(connection_.display());
    if (XEventsQueued(connection_.display(), QueuedAlready) > 0) drain();
}

void XEventPump::drain() {
    if (draining_) return;
    draining_ = true;
    Display* display = connection_.display();
    // Events of one burst only, so that a flood cannot keep the loop from its timers.
    for (int left = 512; left > 0 && XPending(display) > 0; --left) {
        XEvent event;
        XNextEvent(display, &event);
        const bool hasData = event.type == GenericEvent && XGetEventData(display, &event.xcookie) != 0;
        for (std::size_t index = 0; index < handlers_.size(); ++index) handlers_[index]->handle(event);
        if (hasData) XFreeEventData(display, &event.xcookie);
    }
    XFlush(display);
    draining_ = false;
    if (XEventsQueued(display, QueuedAlready) > 0) {
        QMetaObject::invokeMethod(
            &wiring_->context, [this] { drain(); }, Qt::QueuedConnection);
    }
}

}  // namespace trelvan
