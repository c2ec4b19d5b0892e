#include "Platform/Linux/Guard/GuardKeeper.hpp"

#include "Utilities/Logger.hpp"

#include <QSocketNotifier>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

/// A process that lived so long did not end because of how it was started.
constexpr Seconds longLife{60.0};
constexpr Seconds firstDelay{1.0};
constexpr Seconds longestDelay{60.0};

}  // namespace

GuardKeeper::GuardKeeper(Guard& guard, Timers& timers)
    : guard_(guard), timers_(timers), started_(std::chrono::steady_clock::now()) {
    watch();
}

GuardKeeper::~GuardKeeper() = default;

Seconds GuardKeeper::delayAfter(Seconds life, Seconds last) {
    if (life >= longLife) return Seconds{0};
    return std::clamp(last * 2, firstDelay, longestDelay);
}

void GuardKeeper::watch() {
    end_.reset();
    if (guard_.descriptor() < 0) return;
    end_ = std::make_unique<QSocketNotifier>(guard_.descriptor(), QSocketNotifier::Read);
    QObject::connect(end_.get(), &QSocketNotifier::activated, end_.get(), [this] { ended(); });
}

void GuardKeeper::ended() {
    // It is the notifier that tells, so it goes later, and before its descriptor is another one's.
    end_->setEnabled(false);
    end_.release()->deleteLater();
    guard_.noteEnd();
    AppLogger.warning("El proceso guardián ha terminado; se inicia otro");
    // The first one was a copy of this process, whose end says nothing about a start.
    const Seconds life = std::chrono::steady_clock::now() - started_;
    delay_ = std::exchange(isFirst_, false) ? Seconds{0} : delayAfter(life, delay_);
    if (delay_ > Seconds{0}) {
        later_ = timers_.once(delay_, [this] { restart(); });
    } else {
        restart();
    }
}

void GuardKeeper::restart() {
    started_ = std::chrono::steady_clock::now();
    if (guard_.restart()) return watch();
    AppLogger.warning(
        "No se pudo iniciar el proceso guardián: si Trelvan se bloquea, nadie liberará los dispositivos");
    delay_ = delayAfter(Seconds{0}, delay_);
    later_ = timers_.once(delay_, [this] { restart(); });
}

}  // namespace trelvan
