#include "GitHubListParsers.h"
#include "RecordedGh.h"

namespace tarnbeck {
namespace {

using GitHubListParsers::parseIssuesJSON;
using GitHubListParsers::parsePullRequestsJSON;
using ::testing::ElementsAre;

// One item with what is indispensable, and `more` fields.
std::string itemWith(const std::string& more) {
    return R"([{"number":7,"title":"Crash","url":"u")" + (more.empty() ? "" : "," + more) + "}]";
}

// The one issue in the text; a failed expectation when there is another number of them.
GitHubIssue onlyIssue(const std::string& text) {
    const auto issues = parseIssuesJSON(text);
    EXPECT_EQ(issues.size(), 1) << text;
    return issues.empty() ? GitHubIssue{} : issues[0];
}

GitHubPullRequest onlyPullRequest(const std::string& text) {
    const auto pullRequests = parsePullRequestsJSON(text);
    EXPECT_EQ(pullRequests.size(), 1) << text;
    return pullRequests.empty() ? GitHubPullRequest{} : pullRequests[0];
}

std::vector<std::string> labelsOf(const std::string& labels) {
    const auto list = onlyIssue(itemWith("\"labels\":" + labels)).labels;
    return {list.begin(), list.end()};
}

TEST(ParseIssuesJSON, ReadsWhatGhPrints) {
    EXPECT_EQ(onlyIssue("[" + testing::ghIssue(7, "Crash") + "]"),
              (GitHubIssue{.id = 7,
                           .number = 7,
                           .title = "Crash",
                           .state = "OPEN",
                           .labels = {"bug"},
                           .author = "ann",
                           .createdAt = "2026-02-01T08:00:00Z",
                           .updatedAt = "2026-02-02T09:00:00Z",
                           .url = "https://github.com/owner/repo/issues/7"}));
}

TEST(ParseIssuesJSON, KeepsTheOrder) {
    std::vector<std::int64_t> numbers;
    for (const auto& issue :
         parseIssuesJSON("[" + testing::ghIssue(3, "c") + "," + testing::ghIssue(9, "a") + "," +
                         testing::ghIssue(1, "b") + "]")) {
        numbers.push_back(issue.number);
    }
    EXPECT_THAT(numbers, ElementsAre(3, 9, 1));
}

TEST(ParseIssuesJSON, WhatIsNoArrayOfObjectsIsAnEmptyList) {
    for (const char* text : {"", "null", "{}", "3", "\"x\"", "[1]", "[null]", "[[]]", "rubbish",
                             "<html></html>", "[{\"number\":7,\"title\":\"Cra", "[] []"}) {
        EXPECT_TRUE(parseIssuesJSON(text).empty()) << text;
    }
}

TEST(ParseIssuesJSON, OneElementThatIsNoObjectMakesTheWholeListEmpty) {
    EXPECT_TRUE(parseIssuesJSON("[" + testing::ghIssue(7, "Crash") + ",null]").empty());
}

TEST(ParseIssuesJSON, BytesThatAreNotUtf8MakeTheListEmpty) {
    EXPECT_TRUE(parseIssuesJSON("[" + testing::ghIssue(7, "\xFF") + "]").empty());
}

TEST(ParseIssuesJSON, MillionsOfBracketsAreAnEmptyList) {
    EXPECT_TRUE(parseIssuesJSON(std::string(3'000'000, '[')).empty());
}

TEST(ParseIssuesJSON, ItemWithoutNumberIsLeftOut) {
    for (const char* number :
         {"", R"("number":null,)", R"("number":"7",)", R"("number":7.5,)", R"("number":true,)",
          R"("number":1e30,)", R"("number":18446744073709551615,)"}) {
        const std::string item = std::string("{") + number + R"("title":"t","url":"u"})";
        EXPECT_TRUE(parseIssuesJSON("[" + item + "]").empty()) << number;
    }
}

TEST(ParseIssuesJSON, NumberWithAnEmptyFractionIsANumber) {
    EXPECT_EQ(onlyIssue(R"([{"number":7.0,"title":"t","url":"u"}])").number, 7);
}

TEST(ParseIssuesJSON, ItemWithoutTitleIsLeftOut) {
    for (const char* title : {"", R"("title":null,)", R"("title":7,)"}) {
        const std::string item = std::string("{") + title + R"("number":7,"url":"u"})";
        EXPECT_TRUE(parseIssuesJSON("[" + item + "]").empty()) << title;
    }
}

TEST(ParseIssuesJSON, ItemWhoseUrlIsMissingOrNullIsLeftOut) {
    for (const char* url : {"", R"("url":null,)", R"("url":[],)"}) {
        const std::string item = std::string("{") + url + R"("number":7,"title":"t"})";
        EXPECT_TRUE(parseIssuesJSON("[" + item + "]").empty()) << url;
    }
}

TEST(ParseIssuesJSON, TheItemsAroundOneThatIsLeftOutStay) {
    const auto issues =
        parseIssuesJSON("[" + testing::ghIssue(1, "a") + R"(,{"number":2,"title":"b"},)" +
                        testing::ghIssue(3, "c") + "]");
    ASSERT_EQ(issues.size(), 2);
    EXPECT_EQ(issues[0].number, 1);
    EXPECT_EQ(issues[1].number, 3);
}

TEST(ParseIssuesJSON, EmptyTitleAndUrlAreTexts) {
    EXPECT_EQ(onlyIssue(R"([{"number":7,"title":"","url":""}])").title, "");
}

TEST(ParseIssuesJSON, IdIsTheNumberWhateverElseIsToldAsId) {
    EXPECT_EQ(onlyIssue(itemWith(R"("id":"I_kwDO")")).id, 7);
}

TEST(ParseIssuesJSON, WhatIsMissingTakesItsDefault) {
    EXPECT_EQ(onlyIssue(itemWith("")), (GitHubIssue{.id = 7,
                                                    .number = 7,
                                                    .title = "Crash",
                                                    .state = "OPEN",
                                                    .labels = {},
                                                    .author = "",
                                                    .createdAt = "",
                                                    .updatedAt = std::nullopt,
                                                    .url = "u"}));
}

TEST(ParseIssuesJSON, WhatHasAnotherTypeTakesItsDefault) {
    const GitHubIssue plain = onlyIssue(itemWith(""));
    for (const char* field : {"state", "labels", "author", "createdAt", "updatedAt"}) {
        for (const char* value : {"null", "1", "true", "[1]", "{}"}) {
            const std::string more = "\"" + std::string(field) + "\":" + value;
            EXPECT_EQ(onlyIssue(itemWith(more)), plain) << more;
        }
    }
}

TEST(ParseIssuesJSON, StateIsKeptAsItIsTold) {
    EXPECT_EQ(onlyIssue(itemWith(R"("state":"closed")")).state, "closed");
}

TEST(ParseIssuesJSON, LastOfEqualKeysCounts) {
    EXPECT_EQ(onlyIssue(itemWith(R"("title":"second")")).title, "second");
}

TEST(ParseIssuesJSON, DraftFlagIsNothingToIssues) {
    EXPECT_EQ(onlyIssue(itemWith(R"("isDraft":true)")), onlyIssue(itemWith("")));
}

TEST(ParseLabels, NamesComeInTheirOrder) {
    EXPECT_THAT(labelsOf(R"([{"name":"b"},{"name":"a"}])"), ElementsAre("b", "a"));
}

TEST(ParseLabels, LabelWithoutANameIsPassedOver) {
    EXPECT_THAT(labelsOf(R"([{"name":"b"},{},{"name":null},{"name":3},{"name":"a"}])"),
                ElementsAre("b", "a"));
}

TEST(ParseLabels, AnythingButAnArrayOfObjectsIsTheEmptyList) {
    for (const char* labels : {"null", "{}", "\"bug\"", R"(["bug"])", R"([{"name":"b"},"bug"])",
                               R"([{"name":"b"},null])", "{\"name\":\"b\"}"}) {
        EXPECT_THAT(labelsOf(labels), ElementsAre()) << labels;
    }
}

TEST(ParseAuthor, IsTheLogin) {
    EXPECT_EQ(onlyIssue(itemWith(R"("author":{"login":"ann"})")).author, "ann");
}

TEST(ParseAuthor, BotsAndDeletedAccountsAreKeptAsTold) {
    EXPECT_EQ(onlyIssue(itemWith(R"("author":{"is_bot":true,"login":"app/robot"})")).author,
              "app/robot");
    EXPECT_EQ(onlyIssue(itemWith(R"("author":{"is_bot":true,"login":"app/"})")).author, "app/");
}

TEST(ParseAuthor, NullIsTheEmptyTextAndTheItemIsKept) {
    EXPECT_EQ(onlyIssue(itemWith(R"("author":null)")).author, "");
}

TEST(ParseAuthor, AnythingButAnObjectWithATextIsTheEmptyText) {
    for (const char* author : {"\"ann\"", "{}", R"({"login":null})", R"({"login":3})", "[]"}) {
        EXPECT_EQ(onlyIssue(itemWith("\"author\":" + std::string(author))).author, "") << author;
    }
}

TEST(ParsePullRequestsJSON, ReadsWhatGhPrints) {
    EXPECT_EQ(onlyPullRequest("[" + testing::ghPullRequest(8, "Fix", true) + "]"),
              (GitHubPullRequest{.id = 8,
                                 .number = 8,
                                 .title = "Fix",
                                 .state = "OPEN",
                                 .labels = {},
                                 .author = "app/robot",
                                 .createdAt = "2026-02-01T08:00:00Z",
                                 .updatedAt = "2026-02-02T09:00:00Z",
                                 .isDraft = true,
                                 .url = "https://github.com/owner/repo/pull/8"}));
}

TEST(ParsePullRequestsJSON, DraftFlagIsFalseUnlessItIsTrue) {
    for (const char* flag : {"false", "null", "1", "\"true\"", "[true]"}) {
        EXPECT_FALSE(onlyPullRequest(itemWith("\"isDraft\":" + std::string(flag))).isDraft) << flag;
    }
    EXPECT_FALSE(onlyPullRequest(itemWith("")).isDraft);
}

TEST(ParsePullRequestsJSON, WhatIsNoArrayOfObjectsIsAnEmptyList) {
    for (const char* text : {"", "{}", "[1]", "rubbish"}) {
        EXPECT_TRUE(parsePullRequestsJSON(text).empty()) << text;
    }
}

TEST(ParsePullRequestsJSON, ItemWithoutOneOfTheIndispensableIsLeftOut) {
    EXPECT_TRUE(parsePullRequestsJSON(R"([{"title":"t","url":"u"},{"number":1,"url":"u"},)"
                                      R"({"number":1,"title":"t"}])")
                    .empty());
}

}  // namespace
}  // namespace tarnbeck
