#include "GitPaths.h"

namespace tarnbeck::GitPaths {
namespace {

using namespace std::string_literals;

TEST(UnquotedPath, PlainNameIsItself) {
    EXPECT_EQ(unquoted("src/main.cpp"), "src/main.cpp");
    EXPECT_EQ(unquoted(""), "");
}

TEST(UnquotedPath, QuotesAreTakenOff) {
    EXPECT_EQ(unquoted(R"("a b")"), "a b");
    EXPECT_EQ(unquoted(R"("")"), "");
}

TEST(UnquotedPath, EachLetterEscapeIsItsControlCharacter) {
    EXPECT_EQ(unquoted(R"("\a\b\f\n\r\t\v")"), "\a\b\f\n\r\t\v");
}

TEST(UnquotedPath, QuotesAndBackslashesLoseTheirBackslash) {
    EXPECT_EQ(unquoted(R"("say \"hi\" \\o/")"), R"(say "hi" \o/)");
}

TEST(UnquotedPath, OctalEscapesAreBytes) {
    EXPECT_EQ(unquoted(R"("\303\244")"), "ä");
    EXPECT_EQ(unquoted(R"("\377\001")"), "\xFF\x01");
    EXPECT_EQ(unquoted(R"("\0001")"), "\0001"s);
}

TEST(UnquotedPath, BytesThatAreNotEscapedStay) {
    EXPECT_EQ(unquoted("\"ä\\t\xFF\""), "ä\t\xFF");
}

TEST(UnquotedPath, WhatGitWouldNotQuoteSoIsTheNameItself) {
    for (const char* text : {R"(")", R"("a)", R"(a")", R"("a" -> "b")", R"("a\")", R"("\q")",
                             R"("\4")", R"("\400")", R"("\38")", R"("\08a")"}) {
        EXPECT_EQ(unquoted(text), text);
    }
}

TEST(PathSpecification, OrdinaryNameStandsAsItIs) {
    for (const char* name : {"a", "src/a b", "-x", "a:b", "ä", "\xFF", "!a", "^a", "]", "{a}",
                             "a\nb", "\"a\"", "~", "#", "$a"}) {
        EXPECT_EQ(specificationOf(name), name);
    }
}

TEST(PathSpecification, NameWithAPatternCharacterIsMeantLiterally) {
    for (const char* name : {"*", "a*", "src/?.cpp", "[a]", R"(a\b)"}) {
        EXPECT_EQ(specificationOf(name), ":(literal)"s + name);
    }
}

TEST(PathSpecification, LeadingColonIsMeantLiterally) {
    for (const char* name : {":", ":/", ":!x", ":^x", ":(top)x", ":(literal)x"}) {
        EXPECT_EQ(specificationOf(name), ":(literal)"s + name);
    }
}

}  // namespace
}  // namespace tarnbeck::GitPaths
