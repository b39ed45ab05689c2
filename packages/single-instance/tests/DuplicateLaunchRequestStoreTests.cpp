#include "DuplicateLaunchRequestStore.h"
#include "PlayedSurroundings.h"

namespace single_instance::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

DuplicateLaunchRequest requestFor(const std::string& argument, WallTime time = noon) {
    return {{argument}, {}, time};
}

class DuplicateLaunchRequestStore_Files : public ::testing::Test {
  protected:
    std::error_code post(const DuplicateLaunchRequest& request) {
        return DuplicateLaunchRequestStore::post({.request = request,
                                                  .configuration = configuration_,
                                                  .fileManager = files_,
                                                  .signals = signals_});
    }
    void place(const std::string& name, const std::string& content) {
        files_.files.emplace_back(folder_ + "/" + name, content);
    }
    // The first argument of each request.
    std::vector<std::string> consume() {
        std::vector<std::string> arguments;
        for (const auto& request :
             DuplicateLaunchRequestStore::consumePending(configuration_, files_)) {
            arguments.push_back(request.arguments.at(0));
        }
        return arguments;
    }

    const std::string folder_ = "/base/org.example.App/DuplicateLaunchRequests";
    SingleInstanceConfiguration configuration_{
        {.bundleIdentifier = "org.example.App",
         .lockLocation = {SingleInstanceLockLocation::Directory{"/base"}},
         .activationSignalName = "wake"}};
    PlayedFiles files_;
    PlayedSignals signals_;
};

TEST_F(DuplicateLaunchRequestStore_Files, HaveUniqueNamesInUpperCase) {
    for (int count = 0; count < 2; ++count) {
        DuplicateLaunchRequestStore::enqueue(requestFor("a"), configuration_, files_);
    }
    ASSERT_THAT(files_.files, SizeIs(2));
    EXPECT_NE(files_.files[0].first, files_.files[1].first);
    for (const auto& [path, content] : files_.files) {
        EXPECT_THAT(path.substr(folder_.size() + 1),
                    MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                 "[0-9A-F]{12}\\.json"));
    }
}

TEST_F(DuplicateLaunchRequestStore_Files, HoldTheRequest) {
    DuplicateLaunchRequestStore::enqueue(requestFor("a"), configuration_, files_);
    EXPECT_EQ(files_.madeDirectory, folder_);
    ASSERT_THAT(files_.files, SizeIs(1));
    EXPECT_EQ(files_.files[0].second, encoded(requestFor("a")));
}

TEST_F(DuplicateLaunchRequestStore_Files, ThatFailIsTold) {
    files_.failure = std::make_error_code(std::errc::no_space_on_device);
    EXPECT_EQ(DuplicateLaunchRequestStore::enqueue(requestFor("a"), configuration_, files_),
              std::errc::no_space_on_device);
}

TEST_F(DuplicateLaunchRequestStore_Files, OfAPostAreFollowedByTheSignal) {
    EXPECT_FALSE(post(requestFor("a")));
    EXPECT_THAT(files_.files, SizeIs(1));
    EXPECT_THAT(signals_.posted, ElementsAre("wake"));
}

TEST_F(DuplicateLaunchRequestStore_Files, AreWrittenForFilesAloneToo) {
    post({{}, {"file:///a"}, noon});
    EXPECT_THAT(files_.files, SizeIs(1));
}

TEST_F(DuplicateLaunchRequestStore_Files, AreNotWrittenWhereNothingIsAskedFor) {
    EXPECT_FALSE(post({{}, {}, noon}));
    EXPECT_THAT(files_.files, IsEmpty());
    EXPECT_EQ(files_.madeDirectory, "");
    EXPECT_THAT(signals_.posted, ElementsAre("wake"));
}

TEST_F(DuplicateLaunchRequestStore_Files, ThatFailDoNotHoldTheSignalBack) {
    files_.failure = std::make_error_code(std::errc::permission_denied);
    EXPECT_EQ(post(requestFor("a")), std::errc::permission_denied);
    EXPECT_THAT(signals_.posted, ElementsAre("wake"));
}

TEST_F(DuplicateLaunchRequestStore_Files, AreConsumedOldestFirst) {
    post(requestFor("late", noon + 2s));
    post(requestFor("early", noon));
    post(requestFor("middle", noon + 1s));
    EXPECT_THAT(consume(), ElementsAre("early", "middle", "late"));
}

TEST_F(DuplicateLaunchRequestStore_Files, OfOneTimeKeepTheirListingOrder) {
    for (const char* name : {"z", "a", "m", "b"}) post(requestFor(name));
    EXPECT_THAT(consume(), ElementsAre("z", "a", "m", "b"));
}

TEST_F(DuplicateLaunchRequestStore_Files, AreConsumedOnce) {
    post(requestFor("a"));
    EXPECT_THAT(consume(), ElementsAre("a"));
    EXPECT_THAT(files_.files, IsEmpty());
    EXPECT_THAT(consume(), IsEmpty());
}

TEST_F(DuplicateLaunchRequestStore_Files, OfAnotherExtensionStay) {
    for (const char* name : {"a.txt", "b.JSON", "c.json.tmp", ".json", "json"}) {
        place(name, encoded(requestFor("a")));
    }
    EXPECT_THAT(consume(), IsEmpty());
    EXPECT_THAT(files_.files, SizeIs(5));
}

TEST_F(DuplicateLaunchRequestStore_Files, OfAForeignFormatAreRemoved) {
    place("a.json", "{ not json");
    place("b.json", encoded(requestFor("b")));
    EXPECT_THAT(consume(), ElementsAre("b"));
    EXPECT_THAT(files_.files, IsEmpty());
}

TEST_F(DuplicateLaunchRequestStore_Files, ThatCantBeRemovedCountAllTheSame) {
    post(requestFor("a"));
    files_.keepsRemoved = true;
    EXPECT_THAT(consume(), ElementsAre("a"));
}

TEST_F(DuplicateLaunchRequestStore_Files, AreNoneWhereTheFolderCantBeListed) {
    post(requestFor("a"));
    files_.isListed = false;
    EXPECT_THAT(consume(), IsEmpty());
}

}  // namespace
}  // namespace single_instance::testing
