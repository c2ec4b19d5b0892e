#pragma once

#include <memory>
#include <utility>

namespace trelvan {

/// For what is called later, perhaps after its owner is gone: the owner holds a token and hands out calls
/// that do nothing once it has ended.
///
/// The owner and its calls are on one thread; a call may end its owner. What runs on another thread captures
/// values or shares ownership instead, since no question whether somebody is there still holds a moment
/// later.
class LifetimeToken {
  public:
    /// Tells whether the token is still there.
    class Guard {
      public:
        [[nodiscard]] explicit operator bool() const { return !alive_.expired(); }

      private:
        friend class LifetimeToken;
        explicit Guard(const std::shared_ptr<char>& alive) : alive_(alive) {}
        std::weak_ptr<char> alive_;
    };

    LifetimeToken() = default;
    LifetimeToken(const LifetimeToken&) = delete;
    LifetimeToken& operator=(const LifetimeToken&) = delete;

    [[nodiscard]] Guard guard() const { return Guard(alive_); }

    /// The call, which is made only while the token is there. Its result is not looked at.
    template <typename Call>
    [[nodiscard]] auto whileAlive(Call call) const {
        return [guard = guard(), call = std::move(call)](auto&&... arguments) {
            if (guard) call(std::forward<decltype(arguments)>(arguments)...);
        };
    }

  private:
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trelvan
