#include "DependencyStatus.h"
#include "JsonCoding.h"

namespace tarnbeck {
namespace {

const DependencyUpdate update{.ecosystem = DependencyEcosystem::python,
                              .package = "requests",
                              .currentVersion = "2.0",
                              .latestVersion = "3.1",
                              .updateType = DependencyUpdateType::major,
                              .origin = DependencyUpdateOrigin::manifestDirect};

const DependencyEcosystemResult result{.ecosystem = DependencyEcosystem::python,
                                       .project = ".",
                                       .manager = "pip",
                                       .status = DependencyHealth::updatesAvailable,
                                       .updates = {update},
                                       .message = "note"};

JsonObject objectOf(const auto& record) {
    return encodedJson(record).get_object();
}

template <class Type>
std::string errorOf(const JsonObject& json) {
    const auto decoded = decodedJson<Type>(jsonText(json));
    return decoded ? "decoded" : decoded.error();
}

template <class Type>
std::string errorWithout(const Type& record, std::string_view key) {
    JsonObject json = objectOf(record);
    json.erase(key);
    return errorOf<Type>(json);
}

template <class Type>
std::string errorWith(const Type& record, std::string_view key, const JsonValue& value) {
    JsonObject json = objectOf(record);
    json[key] = value;
    return errorOf<Type>(json);
}

TEST(DependencyUpdate_Json, IsWrittenUnderItsFieldNames) {
    EXPECT_EQ(jsonText(encodedJson(update)),
              R"({"ecosystem":"Python","package":"requests","currentVersion":"2.0",)"
              R"("latestVersion":"3.1","updateType":"major","origin":"manifestDirect"})");
}

TEST(DependencyUpdate_Json, ReadsBackTheSame) {
    EXPECT_EQ(*decodedJson<DependencyUpdate>(jsonText(encodedJson(update))), update);
}

TEST(DependencyUpdate_Json, AllSixKeysAreRequired) {
    for (const char* key :
         {"ecosystem", "package", "currentVersion", "latestVersion", "updateType", "origin"}) {
        EXPECT_EQ(errorWithout(update, key), std::string(key) + ": is missing");
    }
}

TEST(DependencyUpdate_Json, NoKeyMayBeNull) {
    for (const char* key :
         {"ecosystem", "package", "currentVersion", "latestVersion", "updateType", "origin"}) {
        EXPECT_EQ(errorWith(update, key, nullptr), std::string(key) + ": is null");
    }
}

TEST(DependencyUpdate_Json, UnknownWordFails) {
    const std::string words = ": expected one of the known words";
    EXPECT_EQ(errorWith(update, "ecosystem", "Ruby"), "ecosystem" + words);
    EXPECT_EQ(errorWith(update, "updateType", "huge"), "updateType" + words);
    EXPECT_EQ(errorWith(update, "origin", "heaven"), "origin" + words);
}

TEST(DependencyUpdate_Json, WordsAreComparedWithTheirCase) {
    EXPECT_EQ(errorWith(update, "ecosystem", "python"),
              "ecosystem: expected one of the known words");
}

TEST(DependencyUpdate_Json, NumberInPlaceOfAWordFails) {
    EXPECT_EQ(errorWith(update, "updateType", 0), "updateType: expected one of the known words");
}

TEST(DependencyUpdate_Json, VersionThatIsANumberFails) {
    EXPECT_EQ(errorWith(update, "latestVersion", 3.1), "latestVersion: expected a text");
}

TEST(DependencyEcosystemResult_Json, ReadsBackTheSame) {
    EXPECT_EQ(*decodedJson<DependencyEcosystemResult>(jsonText(encodedJson(result))), result);
}

TEST(DependencyEcosystemResult_Json, ProjectAndMessageMayBeMissing) {
    JsonObject json = objectOf(result);
    json.erase("project");
    json.erase("message");
    const auto decoded = decodedJson<DependencyEcosystemResult>(jsonText(json));
    ASSERT_TRUE(decoded) << decoded.error();
    EXPECT_EQ(decoded->project, std::nullopt);
    EXPECT_EQ(decoded->message, std::nullopt);
}

TEST(DependencyEcosystemResult_Json, ProjectAndMessageMayBeNull) {
    EXPECT_EQ(errorWith(result, "project", nullptr), "decoded");
    EXPECT_EQ(errorWith(result, "message", nullptr), "decoded");
}

TEST(DependencyEcosystemResult_Json, TheOtherFourKeysAreRequired) {
    for (const char* key : {"ecosystem", "manager", "status", "updates"}) {
        EXPECT_EQ(errorWithout(result, key), std::string(key) + ": is missing");
    }
}

TEST(DependencyEcosystemResult_Json, UnknownHealthFails) {
    EXPECT_EQ(errorWith(result, "status", "fine"), "status: expected one of the known words");
}

TEST(DependencyEcosystemResult_Json, MessageOfAnotherTypeFails) {
    EXPECT_EQ(errorWith(result, "message", false), "message: expected a text");
}

TEST(DependencyEcosystemResult_Json, OneBrokenUpdateFailsTheWholeAndIsPointedOut) {
    JsonObject broken = objectOf(update);
    broken.erase("package");
    EXPECT_EQ(errorWith(result, "updates", {encodedJson(update), broken}),
              "updates[1].package: is missing");
}

TEST(DependencySummary_Json, ReadsBackTheSame) {
    const DependencySummary summary{.ecosystems = {result},
                                    .checkedAt = dateFromSecondsSince2001(793800000.5)};
    EXPECT_EQ(*decodedJson<DependencySummary>(jsonText(encodedJson(summary))), summary);
}

TEST(DependencySummary_Json, DateIsSecondsSince2001) {
    const DependencySummary summary{.checkedAt = dateFromSecondsSince2001(793800000.5)};
    EXPECT_EQ(jsonText(encodedJson(summary)), R"({"ecosystems":[],"checkedAt":793800000.5})");
}

TEST(DependencySummary_Json, EcosystemsAreRequired) {
    EXPECT_EQ(errorWithout(DependencySummary{}, "ecosystems"), "ecosystems: is missing");
    EXPECT_EQ(errorWith(DependencySummary{}, "ecosystems", nullptr), "ecosystems: is null");
}

TEST(DependencySummary_Json, DateMayBeMissingOrNull) {
    EXPECT_EQ(decodedJson<DependencySummary>(R"({"ecosystems":[]})")->checkedAt, std::nullopt);
    EXPECT_EQ(errorWith(DependencySummary{}, "checkedAt", nullptr), "decoded");
}

TEST(DependencySummary_Json, DateAsTextFails) {
    EXPECT_EQ(errorWith(DependencySummary{}, "checkedAt", "2026-03-01T12:00:00Z"),
              "checkedAt: expected a number");
}

TEST(DependencySummary_Json, WholeNumberServesAsADate) {
    EXPECT_EQ(decodedJson<DependencySummary>(R"({"ecosystems":[],"checkedAt":5})")->checkedAt,
              dateFromSecondsSince2001(5));
}

}  // namespace
}  // namespace tarnbeck
