#include "Platform/Shared/Base64.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(Base64, LengthsOfEveryRemainder_MatchTheStandard) {
    EXPECT_EQ(base64Encode(""), "");
    EXPECT_EQ(base64Encode("f"), "Zg==");
    EXPECT_EQ(base64Encode("fo"), "Zm8=");
    EXPECT_EQ(base64Encode("foo"), "Zm9v");
    EXPECT_EQ(base64Encode("foobar"), "Zm9vYmFy");
}

TEST(Base64, AllBytesAtEveryLength_ComeBackTheSame) {
    std::string bytes;
    for (int value = 0; value < 256; ++value) {
        EXPECT_EQ(base64Decode(base64Encode(bytes)), bytes);
        bytes += static_cast<char>(value);
    }
}

TEST(Base64, MalformedText_IsRefused) {
    for (const char* text : {"Z", "Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Zm9*", "Zg=v", "Zm9v\n"}) {
        EXPECT_EQ(base64Decode(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace trelvan
