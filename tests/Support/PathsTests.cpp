#include <cstdlib>
#include <filesystem>
#include <optional>

#include <pwd.h>
#include <unistd.h>

#include "Paths.h"

namespace tarnbeck {
namespace {

const std::string home = "/home/ann";

// Sets HOME, or removes it, and puts the former one back.
class ChangedHome {
  public:
    explicit ChangedHome(const char* value) {
        if (const char* former = std::getenv("HOME")) former_ = former;
        value ? setenv("HOME", value, 1) : unsetenv("HOME");
    }
    ~ChangedHome() { former_ ? setenv("HOME", former_->c_str(), 1) : unsetenv("HOME"); }
    ChangedHome(const ChangedHome&) = delete;
    ChangedHome& operator=(const ChangedHome&) = delete;

  private:
    std::optional<std::string> former_;
};

TEST(Paths_UserHome, IsWhatTheEnvironmentSays) {
    const ChangedHome changed("/somewhere/else//");
    EXPECT_EQ(userHome(), "/somewhere/else");
}

TEST(Paths_UserHome, IsTheUserDatabasesWhereTheEnvironmentIsSilent) {
    const std::string known = getpwuid(geteuid())->pw_dir;
    {
        const ChangedHome absent(nullptr);
        EXPECT_EQ(userHome(), known);
    }
    const ChangedHome empty("");
    EXPECT_EQ(userHome(), known);
}

TEST(Paths_Tilde, AloneIsTheHome) {
    EXPECT_EQ(expandingTilde("~", home), home);
    EXPECT_EQ(expandingTilde("~/", home), home);
}

TEST(Paths_Tilde, LeadsBelowTheHome) {
    EXPECT_EQ(expandingTilde("~/x/y", home), "/home/ann/x/y");
}

TEST(Paths_Tilde, OfANamedUserLeadsBelowTheirHome) {
    const std::string root = getpwnam("root")->pw_dir;
    EXPECT_EQ(expandingTilde("~root", home), root);
    EXPECT_EQ(expandingTilde("~root/x/", home), root + "/x");
}

TEST(Paths_Tilde, OfAnUnknownUserStays) {
    EXPECT_EQ(expandingTilde("~nobody-of-this-name/x/", home), "~nobody-of-this-name/x");
}

TEST(Paths_Tilde, InsideThePathIsAnOrdinaryCharacter) {
    EXPECT_EQ(expandingTilde("/a/~/b", home), "/a/~/b");
    EXPECT_EQ(expandingTilde("a~", home), "a~");
    EXPECT_EQ(expandingTilde(" ~/x", home), " ~/x");
}

TEST(Paths_Tilde, ExpansionDropsTrailingSlashes) {
    EXPECT_EQ(expandingTilde("/a/b//", home), "/a/b");
    EXPECT_EQ(expandingTilde("~/x/", home), "/home/ann/x");
    EXPECT_EQ(expandingTilde("/", home), "/");
    EXPECT_EQ(expandingTilde("", home), "");
}

TEST(Paths_Tilde, HomeThatIsTheRootGivesNoDoubledSlash) {
    EXPECT_EQ(expandingTilde("~/x", "/"), "/x");
    EXPECT_EQ(expandingTilde("~", "/"), "/");
}

TEST(Paths_Tilde, DotsAreLeftToStandardizing) {
    EXPECT_EQ(expandingTilde("~/../b", home), "/home/ann/../b");
}

TEST(Paths_Standardizing, RemovesDotsAndDoubledAndTrailingSlashes) {
    EXPECT_EQ(standardized("/a/./b//c/"), "/a/b/c");
    EXPECT_EQ(standardized("/a/b/../c/.."), "/a");
    EXPECT_EQ(standardized("//a"), "/a");
}

TEST(Paths_Standardizing, NothingLeadsAboveTheRoot) {
    EXPECT_EQ(standardized("/../../a"), "/a");
    EXPECT_EQ(standardized("/.."), "/");
    EXPECT_EQ(standardized("/"), "/");
}

TEST(Paths_Standardizing, NamesThatOnlyBeginWithDotsStay) {
    EXPECT_EQ(standardized("/.../..a/.b/c."), "/.../..a/.b/c.");
}

TEST(Paths_Standardizing, RelativePathBeginsAtTheBase) {
    EXPECT_EQ(standardized("b/../c", "/a/"), "/a/c");
    EXPECT_EQ(standardized("../c", "/a/b"), "/a/c");
    EXPECT_EQ(standardized(".", "/a"), "/a");
}

TEST(Paths_Standardizing, RelativePathBeginsInTheCurrentFolderWithoutABase) {
    EXPECT_EQ(standardized("x"), std::filesystem::current_path().string() + "/x");
}

TEST(Paths_Standardizing, AbsolutePathNeedsNoBase) {
    EXPECT_EQ(standardized("/x", "/a"), "/x");
}

TEST(Paths_Standardizing, BytesThatAreNotUtf8Stay) {
    EXPECT_EQ(standardized("/a\xFF/"), "/a\xFF");
}

TEST(Paths_LastComponent, IgnoresTrailingSlashes) {
    EXPECT_EQ(lastPathComponent("/a/b"), "b");
    EXPECT_EQ(lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(lastPathComponent("/a/b//"), "b");
}

TEST(Paths_LastComponent, OfTheRootIsTheRoot) {
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("//"), "/");
}

TEST(Paths_LastComponent, OfABareNameIsTheName) {
    EXPECT_EQ(lastPathComponent("a"), "a");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(Paths_Parent, IsWhatStandsBeforeTheLastComponent) {
    EXPECT_EQ(parentPath("/a/b"), "/a");
    EXPECT_EQ(parentPath("/a/b/"), "/a");
    EXPECT_EQ(parentPath("a/b"), "a");
}

TEST(Paths_Parent, OfTheTopIsTheRoot) {
    EXPECT_EQ(parentPath("/a"), "/");
    EXPECT_EQ(parentPath("/"), "/");
}

TEST(Paths_Parent, OfABareNameIsEmpty) {
    EXPECT_EQ(parentPath("a"), "");
}

}  // namespace
}  // namespace tarnbeck
