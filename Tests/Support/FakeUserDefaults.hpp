#pragma once

#include "Platform/UserDefaults.hpp"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace trelvan::test {

/// Settings in memory that record what is done to them.
class FakeUserDefaults : public UserDefaults {
  public:
    struct Copy {
        std::string key;
        Data data;
    };

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void set(std::string_view key, DefaultsValue value) override {
        writes.emplace_back(key);
        values.insert_or_assign(std::string(key), std::move(value));
    }
    void remove(std::string_view key) override {
        writes.emplace_back(key);
        if (const auto found = values.find(key); found != values.end()) values.erase(found);
    }
    [[nodiscard]] std::optional<std::string> putAside(std::string_view key, const Data& data) override {
        if (failsToPutAside) return std::nullopt;
        copies.push_back({std::string(key), data});
        return "/settings/" + std::string(key) + ".copy";
    }

    /// The bytes under a key; none when there are no data there.
    [[nodiscard]] std::optional<std::string> bytes(std::string_view key) const {
        const auto value = object(key);
        const auto* data = value ? std::get_if<Data>(&*value) : nullptr;
        return data != nullptr ? std::optional(data->bytes) : std::nullopt;
    }

    std::map<std::string, DefaultsValue, std::less<>> values;
    /// The keys set or removed, in order.
    std::vector<std::string> writes;
    std::vector<Copy> copies;
    bool failsToPutAside = false;
};

}  // namespace trelvan::test
