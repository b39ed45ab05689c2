#include "InMemoryUserDefaults.h"
#include "RepositorySectionExpansionStore.h"

namespace tarnbeck::testing {
namespace {

using ::testing::IsEmpty;
using State = RepositorySectionExpansionStore::State;

class RepositorySectionExpansionStoreTest : public ::testing::Test {
  protected:
    State loaded(std::string_view bytes) {
        defaults_.setData("key", bytes);
        return store_.loadDictionaryState("key");
    }

    InMemoryUserDefaults defaults_;
    RepositorySectionExpansionStore store_{defaults_};
};

TEST_F(RepositorySectionExpansionStoreTest, KeysAreThoseOfAllVersions) {
    EXPECT_EQ(store_.persistedBranchExpansionKey, "ui.branchChangesExpandedByRepo.v1");
    EXPECT_EQ(store_.persistedSubsectionExpansionKey, "ui.subsectionExpandedByRepo.v1");
}

TEST_F(RepositorySectionExpansionStoreTest, StoresAJsonObjectOfObjects) {
    store_.saveDictionaryState({{"/a", {{"remote", true}, {"stashes", false}}}, {"/b", {}}}, "key");
    EXPECT_EQ(defaults_.data("key"), R"({"/a":{"remote":true,"stashes":false},"/b":{}})");
}

TEST_F(RepositorySectionExpansionStoreTest, LoadsWhatItStored) {
    const State state = {{"/a", {{"remote", true}, {"feature/ü", false}}}, {"/ä\n", {{"", true}}}};
    store_.saveDictionaryState(state, "key");
    EXPECT_EQ(store_.loadDictionaryState("key"), state);
}

TEST_F(RepositorySectionExpansionStoreTest, NothingStoredIsEmpty) {
    EXPECT_THAT(store_.loadDictionaryState("key"), IsEmpty());
}

TEST_F(RepositorySectionExpansionStoreTest, ValueOfAnotherTypeIsEmpty) {
    defaults_.setBoolean("key", true);
    EXPECT_THAT(store_.loadDictionaryState("key"), IsEmpty());
}

TEST_F(RepositorySectionExpansionStoreTest, BrokenDataIsEmptyAsAWhole) {
    for (const char* bytes :
         {"", "{", "[]", "null", "\xFF", R"({"/a":{"remote":1}})",
          R"({"/a":{"remote":true},"/b":[]})", R"({"/a":true})", R"({"/a":{"remote":null}})"}) {
        EXPECT_THAT(loaded(bytes), IsEmpty()) << bytes;
    }
}

TEST_F(RepositorySectionExpansionStoreTest, PathThatIsNotUtf8IsStoredWithReplacements) {
    store_.saveDictionaryState({{"/caf\xE9", {{"remote", true}}}}, "key");
    EXPECT_EQ(store_.loadDictionaryState("key"), (State{{"/caf\uFFFD", {{"remote", true}}}}));
}

}  // namespace
}  // namespace tarnbeck::testing
