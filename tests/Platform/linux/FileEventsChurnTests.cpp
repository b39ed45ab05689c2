// Whatever happens to folders, and however fast: in the end exactly those are watched that there
// are, under their right names.
#include <random>
#include <system_error>
#include <thread>

#include "WatchedRoot.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;

class FileEvents_Churn : public testing::WatchedRoot, public ::testing::WithParamInterface<int> {
  protected:
    // Makes, moves, swaps and removes folders at random; what fails, fails.
    void churn(unsigned seed, int steps) const {
        std::mt19937 random(seed);
        for (int step = 0; step < steps; ++step) {
            std::error_code ignored;
            const fs::path one = anyPath(random);
            const fs::path other = anyPath(random);
            switch (random() % 8) {
                case 0:
                case 1:
                case 2:
                    fs::create_directories(one, ignored);
                    break;
                case 3:
                    fs::remove(one, ignored);
                    break;
                case 4:
                    if (random() % 8 == 0) fs::remove_all(one, ignored);
                    break;
                default:
                    fs::rename(one, other, ignored);
                    break;
            }
        }
    }
    fs::path anyPath(std::mt19937& random) const {
        static constexpr const char* names[] = {"a", "b", "c", "d", "excluded"};
        fs::path path = random() % 8 == 0 ? elsewhere_ : at("tree");
        for (auto depth = random() % 4 + 1; depth > 0; --depth) path /= names[random() % 5];
        return path;
    }
    // Writes into each folder that is to be watched, and gives the files.
    std::set<std::string> writeEverywhere() const {
        std::set<std::string> files;
        const auto writeIn = [&](const fs::path& folder) {
            std::ofstream(folder / "probe") << "text";
            files.insert(folder / "probe");
        };
        writeIn(at("tree"));
        for (auto each = fs::recursive_directory_iterator(at("tree"));
             each != fs::recursive_directory_iterator(); ++each) {
            if (each->path().filename() == "excluded") each.disable_recursion_pending();
            if (each->is_directory() && each->path().filename() != "excluded") {
                writeIn(each->path());
            }
        }
        return files;
    }

    const std::string elsewhere_ = folder_.makeFolder("elsewhere");
};

TEST_P(FileEvents_Churn, EndsInExactlyTheFoldersThatThereAre) {
    makeFolder("tree");
    watch({"excluded"});
    const auto seed = static_cast<unsigned>(GetParam());
    std::thread other([&] { churn(seed + 1000, 1500); });
    churn(seed, 1500);
    other.join();
    startAfresh();
    startAfresh();  // the first one may have told of repairs that are not yet made
    const std::size_t watches = testing::ownWatches();
    const std::set<std::string> files = writeEverywhere();
    for (const std::string& file : files) {
        ASSERT_TRUE(events_.waitFor(file)) << "seed " << seed;
    }
    EXPECT_EQ(told(), files);
    events_.close();
    watch({"excluded"});
    EXPECT_EQ(watches, testing::ownWatches());
}

INSTANTIATE_TEST_SUITE_P(Seeds, FileEvents_Churn, ::testing::Range(0, 6));

}  // namespace
}  // namespace tarnbeck
