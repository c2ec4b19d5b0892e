#include "Utilities/LifetimeToken.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelvan {
namespace {

/// Puts off what it is told, and may be gone by then.
class Owner {
  public:
    explicit Owner(std::vector<std::string>& heard) : heard_(heard) {}

    [[nodiscard]] std::function<void(const std::string&)> later() const {
        return lifetime_.whileAlive([this](const std::string& word) { heard_.push_back(word); });
    }
    [[nodiscard]] LifetimeToken::Guard guard() const { return lifetime_.guard(); }

  private:
    std::vector<std::string>& heard_;
    LifetimeToken lifetime_;
};

TEST(LifetimeTokenTest, CallWhileTheOwnerIsThere_IsMadeWithItsArguments) {
    std::vector<std::string> heard;
    const Owner owner(heard);
    const auto call = owner.later();
    call("one");
    call("two");
    EXPECT_EQ(heard, (std::vector<std::string>{"one", "two"}));
}

TEST(LifetimeTokenTest, CallAfterTheOwnerIsGone_DoesNothing) {
    std::vector<std::string> heard;
    auto owner = std::make_unique<Owner>(heard);
    const auto call = owner->later();
    owner.reset();
    call("late");
    EXPECT_TRUE(heard.empty());
}

TEST(LifetimeTokenTest, Guard_TellsTheOwnersEnd) {
    std::vector<std::string> heard;
    auto owner = std::make_unique<Owner>(heard);
    const auto guard = owner->guard();
    EXPECT_TRUE(guard);
    owner.reset();
    EXPECT_FALSE(guard);
}

TEST(LifetimeTokenTest, CallThatEndsItsOwner_IsTheLast) {
    struct Ending {
        int calls = 0;
        std::unique_ptr<LifetimeToken> token = std::make_unique<LifetimeToken>();
    } ending;
    const std::function<void()> call = ending.token->whileAlive([&ending] {
        ++ending.calls;
        ending.token.reset();
    });
    call();
    call();
    EXPECT_EQ(ending.calls, 1);
}

}  // namespace
}  // namespace trelvan
