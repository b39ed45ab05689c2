#include "WatchShortage.h"

namespace tarnbeck {
namespace {

TEST(WatchShortage_Line, NamesTheRootsTheNumberAndTheCommand) {
    EXPECT_EQ(watchShortageLine({"/a", "/b"}, 20, 65536),
              "FSEVENT watch limit reached: falling back to the timer for /a, /b; watches missing: "
              "20; raise the limit with: sysctl fs.inotify.max_user_watches=131072");
}

TEST(WatchShortage_Line, CountsTheRootsBeyondTheThird) {
    EXPECT_EQ(watchShortageLine({"/a", "/b", "/c", "/d", "/e"}, 100000, 65536),
              "FSEVENT watch limit reached: falling back to the timer for /a, /b, /c and 2 more; "
              "watches missing: 100000; raise the limit with: sysctl "
              "fs.inotify.max_user_watches=262144");
}

}  // namespace
}  // namespace tarnbeck
