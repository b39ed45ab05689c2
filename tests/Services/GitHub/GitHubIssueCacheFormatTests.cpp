#include "Dates.h"
#include "GitHubIssueCacheFixture.h"
#include "Json.h"

namespace tarnbeck {
namespace {

using GitHubIssueCacheFormat::CacheEntry;
using GitHubIssueCacheFormat::decoded;
using GitHubIssueCacheFormat::Encoder;
using GitHubIssueCacheFormat::Entries;
using testing::dataWith;

CacheEntry entryAt(double seconds, const GitHubRepositoryData& data = {}) {
    return {.fetchedAt = dateFromSecondsSince2001(seconds), .data = data};
}

std::string joinedPieces(Encoder& encoder, const Entries& entries) {
    std::string text;
    for (const std::string_view piece : encoder.pieces(entries)) text += piece;
    return text;
}

std::string encoded(const Entries& entries) {
    Encoder encoder;
    return joinedPieces(encoder, entries);
}

constexpr std::string_view issueText =
    R"({"id":1,"number":1,"title":"Issue","state":"OPEN","labels":["bug"],"author":"ann",)"
    R"("createdAt":"2026-02-01T08:00:00Z","updatedAt":"2026-02-02T09:00:00Z","url":"i"})";
constexpr std::string_view pullRequestText =
    R"({"id":1,"number":1,"title":"Change","state":"OPEN","labels":[],"author":"",)"
    R"("createdAt":"","isDraft":true,"url":"p"})";

// A file of one good entry and one other.
std::string fileWith(std::string_view otherEntry) {
    return R"({"/good":{"issues":[],"pullRequests":[],"fetchedAt":5},"/other":)" +
           std::string(otherEntry) + "}";
}

std::string entryText(std::string_view issues, std::string_view pullRequests) {
    return R"({"issues":)" + std::string(issues) + R"(,"pullRequests":)" +
           std::string(pullRequests) + R"(,"fetchedAt":5})";
}

TEST(GitHubIssueCacheFormat_Writing, IsOneCompactObjectWithAnEntryForEachPath) {
    EXPECT_EQ(encoded({{"/a", entryAt(5.5, dataWith(1, 1))}, {"/b", entryAt(-2)}}),
              R"({"/a":{"issues":[)" + std::string(issueText) + R"(],"pullRequests":[)" +
                  std::string(pullRequestText) +
                  R"(],"fetchedAt":5.5},"/b":{"issues":[],"pullRequests":[],"fetchedAt":-2}})");
}

TEST(GitHubIssueCacheFormat_Writing, NoEntryIsTheEmptyObject) {
    EXPECT_EQ(encoded({}), "{}");
}

TEST(GitHubIssueCacheFormat_Writing, PathsAndTextsAreEscaped) {
    const GitHubRepositoryData data{.issues = {{.title = "\"\\\n\u2028é"}}};
    const std::string text = encoded({{"/a\"b", entryAt(5, data)}});
    EXPECT_EQ(decoded(text), (Entries{{"/a\"b", entryAt(5, data)}}));
}

TEST(GitHubIssueCacheFormat_Writing, PathThatIsNotUtf8IsReplacedAndStillOneFile) {
    EXPECT_TRUE(decoded(encoded({{"/a\xFF", entryAt(5)}, {"/b", entryAt(5)}})));
}

TEST(GitHubIssueCacheFormat_Writing, EntryThatChangedOrCameIsWrittenAsItIsNow) {
    Encoder encoder;
    Entries entries{{"/b", entryAt(5, dataWith(1, 1))}, {"/c", entryAt(5)}};
    joinedPieces(encoder, entries);
    entries["/b"] = entryAt(5, dataWith(2, 1));
    entries["/c"] = entryAt(6);
    entries["/a"] = entryAt(7);
    EXPECT_EQ(joinedPieces(encoder, entries), encoded(entries));
}

TEST(GitHubIssueCacheFormat_Writing, EntryThatStayedIsNotEncodedAnew) {
    Encoder encoder;
    Entries entries{{"/a", entryAt(5, dataWith(1, 1))}, {"/b", entryAt(5, dataWith(1, 1))}};
    const char* text = encoder.pieces(entries)[2].data();
    entries["/a"] = entryAt(6);
    EXPECT_EQ(encoder.pieces(entries)[2].data(), text);
}

TEST(GitHubIssueCacheFormat_Reading, GivesBackWhatWasWritten) {
    const Entries entries{{"/a", entryAt(794059200.25, dataWith(3, 2))},
                          {"/b", entryAt(5, dataWith(0, 1))},
                          {"/c", entryAt(-1)}};
    EXPECT_EQ(decoded(encoded(entries)), entries);
}

TEST(GitHubIssueCacheFormat_Reading, ListsThatAreAbsentOrNullAreEmpty) {
    EXPECT_EQ(decoded(R"({"/a":{"fetchedAt":5}})"), (Entries{{"/a", entryAt(5)}}));
    EXPECT_EQ(decoded(R"({"/a":{"fetchedAt":5,"issues":null,"pullRequests":null}})"),
              (Entries{{"/a", entryAt(5)}}));
}

TEST(GitHubIssueCacheFormat_Reading, WholeSecondsAreATime) {
    EXPECT_EQ(decoded(R"({"/a":{"fetchedAt":5}})"), decoded(R"({"/a":{"fetchedAt":5.0}})"));
}

TEST(GitHubIssueCacheFormat_Reading, UnknownKeysOfANewerVersionArePassedOver) {
    const std::string newer = R"({"/a":{"etag":"x","fetchedAt":5,"issues":[{"milestone":{},)" +
                              std::string(issueText).substr(1) +
                              R"(],"pullRequests":[],"discussions":[1]}})";
    EXPECT_EQ(decoded(newer), (Entries{{"/a", entryAt(5, dataWith(1, 0))}}));
}

TEST(GitHubIssueCacheFormat_Reading, LastOfEqualPathsCounts) {
    EXPECT_EQ(decoded(R"({"/a":{"fetchedAt":5},"/a":{"fetchedAt":6}})"),
              (Entries{{"/a", entryAt(6)}}));
}

TEST(GitHubIssueCacheFormat_Reading, LastOfEqualKeysCounts) {
    EXPECT_EQ(decoded(R"({"/a":{"fetchedAt":"x","fetchedAt":6}})"), (Entries{{"/a", entryAt(6)}}));
}

TEST(GitHubIssueCacheFormat_Reading, UpdateTimeMayBeLeftOut) {
    EXPECT_TRUE(decoded(fileWith(entryText("[]", "[" + std::string(pullRequestText) + "]"))));
}

TEST(GitHubIssueCacheFormat_Failing, OneEntryWithoutItsTimeLosesAll) {
    EXPECT_EQ(decoded(fileWith(R"({"issues":[],"pullRequests":[]})")), std::nullopt);
    EXPECT_EQ(decoded(fileWith(R"({"fetchedAt":null})")), std::nullopt);
}

TEST(GitHubIssueCacheFormat_Failing, OneTimeOfAnotherTypeLosesAll) {
    for (const char* time : {"\"5\"", "true", "[]", "\"2026-03-01T12:00:00Z\""}) {
        EXPECT_EQ(decoded(fileWith(R"({"fetchedAt":)" + std::string(time) + "}")), std::nullopt)
            << time;
    }
}

TEST(GitHubIssueCacheFormat_Failing, OneListOrItemOfAnotherTypeLosesAll) {
    for (const char* list : {"{}", "3", "\"x\"", "[null]", "[3]", "[{}]"}) {
        EXPECT_EQ(decoded(fileWith(entryText(list, "[]"))), std::nullopt) << list;
        EXPECT_EQ(decoded(fileWith(entryText("[]", list))), std::nullopt) << list;
    }
}

TEST(GitHubIssueCacheFormat_Failing, EveryKeyOfAnIssueIsRequiredButTheUpdateTime) {
    const JsonValue issue = *parsedJson(issueText);
    for (const auto& member : issue.get_object()) {
        JsonValue less = issue;
        less.get_object().erase(member.key());
        EXPECT_EQ(decoded(fileWith(entryText("[" + jsonText(less) + "]", "[]"))).has_value(),
                  member.key() == "updatedAt")
            << member.key();
    }
}

TEST(GitHubIssueCacheFormat_Failing, EveryKeyOfAPullRequestIsRequired) {
    const JsonValue pullRequest = *parsedJson(pullRequestText);
    for (const auto& member : pullRequest.get_object()) {
        JsonValue less = pullRequest;
        less.get_object().erase(member.key());
        EXPECT_EQ(decoded(fileWith(entryText("[]", "[" + jsonText(less) + "]"))), std::nullopt)
            << member.key();
    }
}

TEST(GitHubIssueCacheFormat_Failing, WhatIsNoObjectOfObjectsIsNothing) {
    for (const char* text : {"", "null", "[]", "3", "\"x\"", R"({"/a":null})", R"({"/a":[]})",
                             R"({"/a":5})", "{} {}", "rubbish"}) {
        EXPECT_EQ(decoded(text), std::nullopt) << text;
    }
}

TEST(GitHubIssueCacheFormat_Failing, EveryTruncationIsNothing) {
    const std::string whole = encoded({{"/a", entryAt(5.5, dataWith(1, 1))}});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(decoded(whole.substr(0, length)), std::nullopt) << length;
    }
}

TEST(GitHubIssueCacheFormat_Failing, BytesThatAreNotUtf8AreNothing) {
    EXPECT_EQ(decoded("{\"/a\xFF\":{\"fetchedAt\":5}}"), std::nullopt);
}

}  // namespace
}  // namespace tarnbeck
