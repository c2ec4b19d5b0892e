#include "Core/Model/RecordField.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Support/RandomRecords.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <tuple>

namespace trelvan {

namespace test {

template <typename T>
constexpr bool isOptional = false;
template <typename T>
constexpr bool isOptional<std::optional<T>> = true;

/// Stands for a value of any member. An optional takes it as its content, or it would be ambiguous.
struct AnyValue {
    template <typename T>
    requires(!isOptional<T>) operator T() const;  // NOLINT(google-explicit-constructor)
};

}  // namespace test

namespace {

using test::AnyValue;

/// How many members an aggregate has.
template <typename Record, typename... Values>
consteval std::size_t memberCount() {
    if constexpr (requires { Record{Values{}..., AnyValue{}}; }) {
        return memberCount<Record, Values..., AnyValue>();
    } else {
        return sizeof...(Values);
    }
}

template <typename Record>
constexpr std::size_t fieldCount = std::tuple_size_v<decltype(Record::fields())>;

// A member that is not in the list would be neither stored nor compared.
static_assert(fieldCount<CustomShortcut> == memberCount<CustomShortcut>());
// The array of functions stands for the members of each.
static_assert(fieldCount<ButtonMapping> ==
              memberCount<ButtonMapping>() - 1 + allFunctionSlots.size() * memberCount<MappingFunction>());
static_assert(fieldCount<SmartButtonApp> == memberCount<SmartButtonApp>());
static_assert(fieldCount<SmartButtonConfiguration> == memberCount<SmartButtonConfiguration>());
static_assert(fieldCount<TrackballProfile> == memberCount<TrackballProfile>());

template <typename Record>
class RecordFields : public testing::Test {};

using Records =
    testing::Types<CustomShortcut, ButtonMapping, SmartButtonApp, SmartButtonConfiguration, TrackballProfile>;
TYPED_TEST_SUITE(RecordFields, Records);

TYPED_TEST(RecordFields, KeysAreDistinct) {
    std::set<std::string_view> keys;
    std::apply([&](const auto&... field) { (keys.insert(field.key), ...); }, TypeParam::fields());
    EXPECT_EQ(keys.size(), fieldCount<TypeParam>);
}

void change(std::string& text) {
    text += "x";
}
void change(bool& truth) {
    truth = !truth;
}
void change(Uuid& id) {
    id = Uuid::version4({1});
}
void change(std::optional<std::int64_t>& number) {
    number = 7;
}
template <std::integral Number>
void change(Number& number) {
    ++number;
}
template <RawRepresentable Enum>
void change(Enum& value) {
    value = static_cast<Enum>(1);
}
void change(CustomShortcut& shortcut) {
    shortcut.keyCode = 5;
}
void change(SmartButtonConfiguration& configuration) {
    configuration.isEnabled = true;
}
template <typename T>
void change(std::vector<T>& list) {
    list.emplace_back();
}

TYPED_TEST(RecordFields, EveryMemberCountsForEquality) {
    const TypeParam original;
    EXPECT_EQ(original, TypeParam{});
    std::apply(
        [&](const auto&... field) {
            const auto check = [&](const auto& one) {
                TypeParam changed;
                change(one.of(changed));
                EXPECT_NE(changed, original) << one.key;
            };
            (check(field), ...);
        },
        TypeParam::fields());
}

TEST(RecordEquality, TextsAreComparedUnderCanonicalEquivalence) {
    CustomShortcut composedText{8, 0, "Á"};
    CustomShortcut decomposedText{8, 0, "A\u0301"};
    EXPECT_EQ(composedText, decomposedText);
}

TEST(RecordEquality, MappingsThatDifferOnlyInIdAreDifferent) {
    ButtonMapping left = ButtonMapping::unassigned(Uuid::version4({1}), 3, "x");
    ButtonMapping right = left;
    EXPECT_EQ(left, right);
    right.id = Uuid::version4({2});
    EXPECT_NE(left, right);
}

TEST(RecordEquality, ListsAreComparedInOrder) {
    TrackballProfile left;
    left.mappings = {ButtonMapping::unassigned({}, 3, "a"), ButtonMapping::unassigned({}, 4, "b")};
    TrackballProfile right = left;
    EXPECT_EQ(left, right);
    std::swap(right.mappings[0], right.mappings[1]);
    EXPECT_NE(left, right);
}

TEST(CustomShortcut, EmptyOnlyWithoutKeyModifiersAndText) {
    EXPECT_TRUE(CustomShortcut{}.isEmpty());
    EXPECT_FALSE((CustomShortcut{1, 0, ""}).isEmpty());
    EXPECT_FALSE((CustomShortcut{0, 1, ""}).isEmpty());
    EXPECT_FALSE((CustomShortcut{0, 0, "A"}).isEmpty());
}

}  // namespace
}  // namespace trelvan
