#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include "QtClipboard.h"
#include "QtExternalOpener.h"

namespace tarnbeck {
namespace {

TEST(FileUrl, KeepsBlanksAndSigns) {
    EXPECT_EQ(fileUrl("/a b/c#d?e%f").toEncoded(), "file:///a%20b/c%23d%3Fe%25f");
    EXPECT_EQ(fileUrl("/a b/c#d?e%f").toLocalFile(), "/a b/c#d?e%f");
}

TEST(FileUrl, KeepsBytesThatAreNoText) {
    EXPECT_EQ(fileUrl("/a\xFF").toEncoded(), "file:///a%FF");
}

TEST(WebUrl, TakesAddressesOfTheWeb) {
    ASSERT_TRUE(webUrl("https://example.org/a/b?c=d#e"));
    EXPECT_EQ(webUrl("https://example.org/a/b?c=d#e")->toEncoded(),
              "https://example.org/a/b?c=d#e");
    EXPECT_TRUE(webUrl("http://example.org"));
    EXPECT_TRUE(webUrl("HTTPS://example.org"));
}

TEST(WebUrl, TakesNothingElse) {
    for (const char* text :
         {"file:///etc/passwd", "javascript:alert(1)", "ftp://example.org", "example.org", "",
          "https://", "https:/example.org", "--help", "https://exa mple.org"}) {
        EXPECT_FALSE(webUrl(text)) << text;
    }
}

TEST(QtClipboard, HoldsTheText) {
    QtClipboard clipboard;
    clipboard.setString("feature/größe");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("feature/größe"));
}

TEST(QtClipboard, ReplacesBytesThatAreNoText) {
    QtClipboard clipboard;
    clipboard.setString("a\xFFz");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("a\uFFFDz"));
}

}  // namespace
}  // namespace tarnbeck
