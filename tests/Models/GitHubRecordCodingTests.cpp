#include "GitHubIssue.h"
#include "GitHubPullRequest.h"
#include "JsonCoding.h"

namespace tarnbeck {
namespace {

const GitHubIssue issue{.id = 7,
                        .number = 7,
                        .title = "Crash",
                        .state = "OPEN",
                        .labels = {"bug", "linux"},
                        .author = "ann",
                        .createdAt = "2026-03-01T12:00:00Z",
                        .updatedAt = "2026-03-02T12:00:00Z",
                        .url = "https://github.com/o/r/issues/7"};

constexpr std::string_view issueText =
    R"({"id":7,"number":7,"title":"Crash","state":"OPEN","labels":["bug","linux"],"author":"ann",)"
    R"("createdAt":"2026-03-01T12:00:00Z","updatedAt":"2026-03-02T12:00:00Z",)"
    R"("url":"https://github.com/o/r/issues/7"})";

constexpr std::string_view pullRequestText =
    R"({"id":8,"number":8,"title":"Fix","state":"OPEN","labels":[],"author":"","createdAt":"",)"
    R"("isDraft":true,"url":"https://github.com/o/r/pull/8"})";

// `text` with the value of one key replaced.
std::string replaced(std::string_view text, std::string_view key, const JsonValue& value) {
    JsonValue json = *parsedJson(text);
    json.get_object()[key] = value;
    return jsonText(json);
}

std::string without(std::string_view text, std::string_view key) {
    JsonValue json = *parsedJson(text);
    json.get_object().erase(key);
    return jsonText(json);
}

std::string issueError(const std::string& text) {
    const auto decoded = decodedJson<GitHubIssue>(text);
    return decoded ? "decoded" : decoded.error();
}

TEST(GitHubIssue_Json, IsWrittenUnderItsFieldNames) {
    EXPECT_EQ(jsonText(encodedJson(issue)), issueText);
}

TEST(GitHubIssue_Json, ReadsBackTheSame) {
    EXPECT_EQ(*decodedJson<GitHubIssue>(issueText), issue);
}

TEST(GitHubIssue_Json, AbsentUpdateTimeStaysAbsent) {
    const auto decoded = decodedJson<GitHubIssue>(without(issueText, "updatedAt"));
    ASSERT_TRUE(decoded) << decoded.error();
    EXPECT_EQ(decoded->updatedAt, std::nullopt);
}

TEST(GitHubIssue_Json, UpdateTimeThatIsNullIsAbsent) {
    const auto decoded = decodedJson<GitHubIssue>(replaced(issueText, "updatedAt", nullptr));
    ASSERT_TRUE(decoded) << decoded.error();
    EXPECT_EQ(decoded->updatedAt, std::nullopt);
}

TEST(GitHubIssue_Json, AbsentUpdateTimeIsLeftOut) {
    GitHubIssue untouched = issue;
    untouched.updatedAt.reset();
    EXPECT_EQ(jsonText(encodedJson(untouched)), without(issueText, "updatedAt"));
}

TEST(GitHubIssue_Json, AbsentUpdateTimeIsNullWhereAskedFor) {
    GitHubIssue untouched = issue;
    untouched.updatedAt.reset();
    const auto json = encodedJson(untouched, {.absent = JsonStyle::Absent::asNull});
    EXPECT_EQ(jsonText(json), replaced(issueText, "updatedAt", nullptr));
}

TEST(GitHubIssue_Json, EveryOtherKeyIsRequired) {
    for (const char* key :
         {"id", "number", "title", "state", "labels", "author", "createdAt", "url"}) {
        EXPECT_EQ(issueError(without(issueText, key)), std::string(key) + ": is missing");
    }
}

TEST(GitHubIssue_Json, NoRequiredKeyMayBeNull) {
    for (const char* key :
         {"id", "number", "title", "state", "labels", "author", "createdAt", "url"}) {
        EXPECT_EQ(issueError(replaced(issueText, key, nullptr)), std::string(key) + ": is null");
    }
}

TEST(GitHubIssue_Json, NumberAsTextFails) {
    EXPECT_EQ(issueError(replaced(issueText, "number", "7")), "number: expected an integer");
}

TEST(GitHubIssue_Json, NumberWithAFractionFails) {
    EXPECT_EQ(issueError(replaced(issueText, "number", 7.5)), "number: expected an integer");
}

TEST(GitHubIssue_Json, TitleThatIsANumberFails) {
    EXPECT_EQ(issueError(replaced(issueText, "title", 7)), "title: expected a text");
}

TEST(GitHubIssue_Json, UpdateTimeOfAnotherTypeFails) {
    EXPECT_EQ(issueError(replaced(issueText, "updatedAt", 7)), "updatedAt: expected a text");
}

TEST(GitHubIssue_Json, LabelsThatAreNoListFail) {
    EXPECT_EQ(issueError(replaced(issueText, "labels", "bug")), "labels: expected an array");
}

TEST(GitHubIssue_Json, OneLabelOfAnotherTypeFailsAndIsPointedOut) {
    EXPECT_EQ(issueError(replaced(issueText, "labels", {"bug", nullptr})),
              "labels[1]: expected a text");
}

TEST(GitHubIssue_Json, UnknownKeysArePassedOver) {
    EXPECT_EQ(*decodedJson<GitHubIssue>(replaced(issueText, "body", "text")), issue);
}

TEST(GitHubIssue_Json, WhatIsNoObjectFails) {
    EXPECT_EQ(issueError("[]"), "expected an object");
    EXPECT_EQ(issueError("null"), "expected an object");
}

TEST(GitHubIssue_Default, StateIsOpenUnlessToldOtherwise) {
    EXPECT_EQ(GitHubIssue{}.state, "OPEN");
    EXPECT_EQ(GitHubPullRequest{}.state, "OPEN");
}

TEST(GitHubPullRequest_Json, ReadsBackTheSame) {
    const GitHubPullRequest pullRequest{.id = 8,
                                        .number = 8,
                                        .title = "Fix",
                                        .updatedAt = "2026",
                                        .isDraft = true,
                                        .url = "https://github.com/o/r/pull/8"};
    EXPECT_EQ(*decodedJson<GitHubPullRequest>(jsonText(encodedJson(pullRequest))), pullRequest);
}

TEST(GitHubPullRequest_Json, DraftFlagStandsBetweenUpdateTimeAndUrl) {
    std::vector<std::string> names;
    forEachField<GitHubPullRequest>(
        [&](std::string_view name, auto /*member*/) { names.emplace_back(name); });
    EXPECT_THAT(names, ::testing::ElementsAre("id", "number", "title", "state", "labels", "author",
                                              "createdAt", "updatedAt", "isDraft", "url"));
}

TEST(GitHubPullRequest_Json, DraftFlagIsRequired) {
    const auto decoded = decodedJson<GitHubPullRequest>(without(pullRequestText, "isDraft"));
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error(), "isDraft: is missing");
}

TEST(GitHubPullRequest_Json, DraftFlagThatIsANumberFails) {
    const auto decoded = decodedJson<GitHubPullRequest>(replaced(pullRequestText, "isDraft", 1));
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error(), "isDraft: expected true or false");
}

}  // namespace
}  // namespace tarnbeck
