#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace trelvan {

/// Keeps an observer registered for as long as it lives; moving it hands the registration on. It may outlive
/// what it observes.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }

    void reset() {
        if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

  private:
    std::function<void()> cancel_;
};

/// A value that tells its observers before it changes, also when the new value equals the old one.
///
/// One thread only (the main thread). An observer may end its own or another subscription while it is told.
template <typename T>
class Published {
  public:
    using Observer = std::function<void(const T& newValue)>;

    Published() = default;
    explicit Published(T value) : value_(std::move(value)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    [[nodiscard]] const T& get() const { return value_; }
    operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor): reads like the value
    const T* operator->() const { return &value_; }

    Published& operator=(T newValue) {
        tell(newValue);
        value_ = std::move(newValue);
        return *this;
    }

    /// Changes the value in place; observers are told first, with the value as it will be. Where nobody
    /// observes nothing is copied.
    template <typename Change>
    void update(Change&& change) {
        if (!observers_ || observers_->empty()) {
            std::forward<Change>(change)(value_);
            return;
        }
        T changed = value_;
        std::forward<Change>(change)(changed);
        *this = std::move(changed);
    }

    [[nodiscard]] Subscription observe(Observer observer) {
        if (!observers_) observers_ = std::make_shared<Observers>();
        auto entry = std::make_shared<Observer>(std::move(observer));
        observers_->push_back(entry);
        return Subscription([list = std::weak_ptr(observers_), entry] {
            *entry = nullptr;
            if (const auto held = list.lock()) held->remove(entry);
        });
    }

  private:
    using Observers = std::list<std::shared_ptr<Observer>>;

    void tell(const T& newValue) {
        if (!observers_ || observers_->empty()) return;
        const Observers snapshot = *observers_;
        for (const auto& observer : snapshot) {
            // Called through a copy: the observer may end its own subscription.
            if (const Observer call = *observer) call(newValue);
        }
    }

    T value_{};
    std::shared_ptr<Observers> observers_;
};

}  // namespace trelvan
