#include "Text.h"

namespace tarnbeck {
namespace {

TEST(Text_Decoding, OneBadByteMakesTheWholeTextEmpty) {
    EXPECT_EQ(decodedUtf8("good \xC3\x28 bad"), "");
}

TEST(Text_Decoding, LeadingByteOrderMarkIsDropped) {
    EXPECT_EQ(decodedUtf8("\xEF\xBB\xBFtext"), "text");
}

}  // namespace
}  // namespace tarnbeck
