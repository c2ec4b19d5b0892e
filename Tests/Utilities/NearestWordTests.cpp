#include "Utilities/NearestWord.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace trelvan {
namespace {

TEST(NearestWordTest, DistanceCountsInsertionsRemovalsReplacementsAndExchanges) {
    EXPECT_EQ(editDistance("", ""), 0U);
    EXPECT_EQ(editDistance("", "abc"), 3U);
    EXPECT_EQ(editDistance("config", "confg"), 1U);
    EXPECT_EQ(editDistance("simulate", "simualte"), 1U);
    EXPECT_EQ(editDistance("copy", "copiar"), 3U);
    EXPECT_EQ(editDistance("ab", "xy"), 2U);
}

TEST(NearestWordTest, CapitalsAndAccentsDoNotCount) {
    EXPECT_EQ(editDistance("ATRAS", "Atrás"), 0U);
    EXPECT_EQ(folded("Captura de ÁREA"), "captura de area");
}

TEST(NearestWordTest, BytesThatAreNotUtf8CountAsCharacters) {
    EXPECT_EQ(editDistance("a\xff", "a\xff"), 0U);
    EXPECT_EQ(editDistance("a\xff", "a"), 1U);
}

TEST(NearestWordTest, NearestIsTheLeastDifferentAndTheFirstOfEquals) {
    constexpr std::array<std::string_view, 4> words{"Copiar", "Cortar", "Pegar", "Tortar"};
    EXPECT_EQ(nearestWord("Copia", words), 0U);
    EXPECT_EQ(nearestWord("xortar", words), 1U);
    EXPECT_EQ(nearestWord("pegar", words), 2U);
}

TEST(NearestWordTest, WordThatIsLikeNoneHasNoNearest) {
    constexpr std::array<std::string_view, 2> words{"--config", "--help"};
    EXPECT_EQ(nearestWord("--fast", words), std::nullopt);
    EXPECT_EQ(nearestWord("", words), std::nullopt);
    EXPECT_EQ(nearestWord("x", {}), std::nullopt);
}

TEST(NearestWordTest, EndlessWordIsComparedInNoTime) {
    constexpr std::array<std::string_view, 1> words{"--config"};
    EXPECT_EQ(nearestWord(std::string(1'000'000, 'c'), words), std::nullopt);
}

}  // namespace
}  // namespace trelvan
