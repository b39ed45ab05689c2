#include "DependencyStatus.h"
#include "Fuzzing.h"
#include "GitHubIssue.h"
#include "GitHubPullRequest.h"
#include "JsonText.h"

template <class Type>
void expectToComeBack(std::string_view text) {
    const auto record = tarnbeck::decodedJson<Type>(text);
    if (!record) return;
    const auto again =
        tarnbeck::decodedJson<Type>(tarnbeck::jsonText(tarnbeck::encodedJson(*record)));
    promise(again && *again == *record);
    promise(tarnbeck::encodedJsonText(*record) ==
            tarnbeck::jsonText(tarnbeck::encodedJson(*record)));
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    expectToComeBack<tarnbeck::DependencySummary>(textOf(data, size));
    expectToComeBack<tarnbeck::GitHubIssue>(textOf(data, size));
    expectToComeBack<tarnbeck::GitHubPullRequest>(textOf(data, size));
    return 0;
}
