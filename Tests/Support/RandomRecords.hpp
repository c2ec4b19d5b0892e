#pragma once

#include "Core/Model/TrackballProfile.hpp"

#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

namespace trelvan::test {

/// Makes records with arbitrary content; the same ones for the same seed.
class RandomRecords {
  public:
    explicit RandomRecords(std::uint32_t seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }

    TrackballProfile profile() {
        TrackballProfile result;
        fill(result);
        return result;
    }

  private:
    template <RecordWithFields Record>
    void fill(Record& record) {
        std::apply([&](const auto&... field) { (fill(field.of(record)), ...); }, Record::fields());
        if constexpr (std::is_same_v<Record, ButtonMapping>) {
            record.functionSlots = static_cast<std::int64_t>(1 + below(4));
        }
    }
    template <RawRepresentable Enum>
    void fill(Enum& value) {
        const auto cases = allCases<Enum>();
        value = cases[below(cases.size())];
    }
    template <std::integral Number>
    void fill(Number& value) {
        using Limits = std::numeric_limits<Number>;
        switch (below(4)) {
            case 0:
                value = Limits::min();
                break;
            case 1:
                value = Limits::max();
                break;
            case 2:
                value = static_cast<Number>(below(2));
                break;
            default:
                value = static_cast<Number>(engine_());
                break;
        }
    }
    void fill(std::string& text) {
        static constexpr std::string_view pieces[] = {"",
                                                      "a",
                                                      " ",
                                                      "\"",
                                                      "\\",
                                                      "/",
                                                      "\n",
                                                      "á",
                                                      "Á",
                                                      "ñ",
                                                      "🖱",
                                                      "{\"id\":1}",
                                                      "漢",
                                                      "\x01",
                                                      "\t",
                                                      "e\u0301",
                                                      std::string_view("\0", 1),
                                                      "null"};
        text.clear();
        for (std::size_t left = below(6); left > 0; --left) text += pieces[below(std::size(pieces))];
    }
    void fill(Uuid& id) {
        Uuid::Bytes bytes{};
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(engine_());
        id = Uuid(bytes);
    }
    template <typename T>
    void fill(std::optional<T>& value) {
        value.reset();
        if (below(2) == 0) fill(value.emplace());
    }
    template <typename T>
    void fill(std::vector<T>& list) {
        list.clear();
        for (std::size_t left = below(5); left > 0; --left) fill(list.emplace_back());
    }

    std::mt19937_64 engine_;
};

}  // namespace trelvan::test
