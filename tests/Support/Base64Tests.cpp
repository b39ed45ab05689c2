#include <optional>

#include "Base64.h"

namespace tarnbeck {
namespace {

TEST(Base64_Encoding, PadsToGroupsOfFour) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foob"), "Zm9vYg==");
    EXPECT_EQ(base64("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
}

TEST(Base64_Encoding, KeepsEveryByte) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    EXPECT_EQ(decodedBase64(base64(bytes)), bytes);
    EXPECT_EQ(base64("\xfb\xff\xfe"), "+//+");
}

class Base64_Foreign : public ::testing::TestWithParam<const char*> {};

TEST_P(Base64_Foreign, DoesNotDecode) {
    EXPECT_EQ(decodedBase64(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Text, Base64_Foreign,
                         ::testing::Values("Z", "Zg", "Zg=", "Z===", "====", "=", "Zg==Zg==",
                                           "Zm 9", "Zm9\n", "Zm9-", "Zh==", "Zm9=", "\xff\xff=="));

}  // namespace
}  // namespace tarnbeck
