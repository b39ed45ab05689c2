#include <filesystem>

#include "GitFixture.h"
#include "Program.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
namespace fs = std::filesystem;

class DiscardEndToEnd : public ::testing::Test {
  protected:
    ProgramCall discard(std::vector<std::string> words) const {
        ProgramCall call{.arguments = {"discard"}, .home = folder / "home", .folder = repository};
        call.arguments.insert(call.arguments.end(), words.begin(), words.end());
        return call;
    }
    // Typed on the terminal when the question has come.
    ProgramResult answered(std::vector<std::string> words, const std::string& answer) {
        ProgramCall call = discard(std::move(words));
        call.output = ProgramCall::Output::terminal;
        call.errors = ProgramCall::Errors::terminal;
        call.input = ProgramCall::Input::terminal;
        call.columns = 250;
        RunningProgram program(call);
        EXPECT_TRUE(program.readUntil("[y/N] "));
        for (const char character : answer) program.type(character);
        return program.wait();
    }
    std::string in(const std::string& name) const { return repository + "/" + name; }

    TemporaryFolder folder;
    std::string repository = makeRepository(folder / "alpha");
};

TEST_F(DiscardEndToEnd, RestoresTheFileWithoutAQuestionWhenToldSo) {
    folder.write("alpha/file.txt", "changed");
    const auto result = run(discard({repository, "file.txt", "--yes"}));
    EXPECT_EQ(result.output, "Discarded the changes of file.txt in " + repository + "\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
}

TEST_F(DiscardEndToEnd, DeletesAnUntrackedFile) {
    folder.write("alpha/new.txt", "new");
    const auto result = run(discard({repository, "new.txt", "-y"}));
    EXPECT_EQ(result.output, "Deleted new.txt in " + repository + "\n");
    EXPECT_FALSE(fs::exists(in("new.txt")));
}

TEST_F(DiscardEndToEnd, SaysThatAFileWhichWasAddedIsDeleted) {
    folder.write("alpha/new.txt", "new");
    git(repository, {"add", "new.txt"});
    const auto result = run(discard({repository, "new.txt", "-y"}));
    EXPECT_EQ(result.output, "Deleted new.txt in " + repository + "\n");
    EXPECT_FALSE(fs::exists(in("new.txt")));
}

TEST_F(DiscardEndToEnd, AsksFirstAndYesDoesIt) {
    folder.write("alpha/file.txt", "changed");
    const auto result = answered({repository, "file.txt"}, "y\n");
    EXPECT_THAT(withoutTerminalCodes(result.output),
                HasSubstr("Discard the changes of file.txt in " + repository +
                          "? This can't be undone. [y/N] "));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(contentOf(in("file.txt")), "content\n");
}

TEST_F(DiscardEndToEnd, AsksWhetherToDeleteAnUntrackedFile) {
    folder.write("alpha/new.txt", "new");
    const auto result = answered({repository, "new.txt"}, "YES\n");
    EXPECT_THAT(withoutTerminalCodes(result.output),
                HasSubstr("Delete new.txt in " + repository + "? This can't be undone. [y/N] "));
    EXPECT_FALSE(fs::exists(in("new.txt")));
}

class DiscardEndToEnd_Refused : public DiscardEndToEnd,
                                public ::testing::WithParamInterface<const char*> {};

TEST_P(DiscardEndToEnd_Refused, AnyOtherAnswerLeavesTheFile) {
    folder.write("alpha/file.txt", "changed");
    const auto result = answered({repository, "file.txt"}, GetParam());
    EXPECT_THAT(result.output, HasSubstr("tarnbeck-cli: nothing was discarded"));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(contentOf(in("file.txt")), "changed");
}

INSTANTIATE_TEST_SUITE_P(Answers, DiscardEndToEnd_Refused,
                         ::testing::Values("n\n", "\n", "\x04", "yellow\n", "j\n"));

TEST_F(DiscardEndToEnd, WithoutATerminalToAskOnLeavesTheFile) {
    folder.write("alpha/file.txt", "changed");
    const auto result = run(discard({repository, "file.txt"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: standard input is no terminal to ask on: --yes discards without "
              "asking\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(contentOf(in("file.txt")), "changed");
}

TEST_F(DiscardEndToEnd, PathInsideTheRepositoryMeansIt) {
    folder.write("alpha/sub/new.txt", "new");
    EXPECT_EQ(run(discard({"sub", "sub/new.txt", "--yes"})).status, 0);
    EXPECT_FALSE(fs::exists(in("sub/new.txt")));
}

TEST_F(DiscardEndToEnd, FileFromTheCurrentFolderIsMeant) {
    folder.write("alpha/sub/new.txt", "new");
    ProgramCall call = discard({".", "new.txt", "--yes"});
    call.folder = in("sub");
    EXPECT_EQ(run(call).output, "Deleted sub/new.txt in " + repository + "\n");
}

TEST_F(DiscardEndToEnd, WorktreeIsServedByItsPath) {
    git(repository, {"worktree", "add", "-q", "-b", "side", folder / "linked"});
    folder.write("linked/file.txt", "changed there");
    folder.write("alpha/file.txt", "changed here");
    EXPECT_EQ(run(discard({folder / "linked", "file.txt", "--yes"})).status, 0);
    EXPECT_EQ(contentOf(folder / "linked/file.txt"), "content\n");
    EXPECT_EQ(contentOf(in("file.txt")), "changed here");
}

TEST_F(DiscardEndToEnd, OddNamesAreMeantAsTheyAre) {
    for (const char* name : {"[a]", "*", "-x", ":(top)b", "{}", "c d", "++"}) {
        folder.write(std::string("alpha/") + name, "new");
    }
    for (const char* name : {"[a]", "*", "-x", ":(top)b", "{}", "c d", "++"}) {
        const auto result = run(discard({"--yes", "--", repository, name}));
        EXPECT_EQ(result.errors, "");
        EXPECT_FALSE(fs::exists(in(name))) << name;
    }
    EXPECT_TRUE(fs::exists(in("file.txt")));
}

TEST_F(DiscardEndToEnd, ControlCharactersInANameAreShownHarmlessly) {
    folder.write("alpha/a\033[31m\n", "new");
    EXPECT_EQ(run(discard({repository, "a\033[31m\n", "--yes"})).output,
              "Deleted a\uFFFD[31m\uFFFD in " + repository + "\n");
}

TEST_F(DiscardEndToEnd, FileWithoutChangesIsNamed) {
    const auto result = run(discard({repository, "file.txt", "--yes"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: file.txt: is no uncommitted change in " + repository + "\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, RenameIsNamedAndStays) {
    git(repository, {"mv", "file.txt", "renamed.txt"});
    const auto result = run(discard({repository, "renamed.txt", "--yes"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: renamed.txt: is renamed, which can't be discarded here\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(fs::exists(in("renamed.txt")));
}

TEST_F(DiscardEndToEnd, FailureGivesGitsWordsAndOne) {
    folder.write("alpha/file.txt", "changed");
    folder.write("alpha/.git/index.lock", "");
    const auto result = run(discard({repository, "file.txt", "--yes"}));
    EXPECT_THAT(result.errors, HasSubstr("index.lock': File exists."));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, RepositoryInsideIsLeftAloneAndThatIsSaid) {
    makeRepository(in("inner"));
    const auto result = run(discard({repository, "inner", "--yes"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: git deleted nothing, because inner/ is a repository of its own\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, MissingPathIsNamed) {
    const auto result = run(discard({"missing", "file.txt", "--yes"}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: missing: does not exist\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, PathOutsideAnyRepositoryIsNamed) {
    const auto result = run(discard({folder.path(), "file.txt", "--yes"}));
    EXPECT_EQ(result.errors,
              "tarnbeck-cli: " + folder.path() + ": is neither a git repository nor inside one\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, RepositoryThatCantBeScannedIsNamedWithTheReason) {
    git("/", {"init", "-q", folder / "fresh"});
    const auto result = run(discard({folder / "fresh", "a", "--yes"}));
    EXPECT_EQ(result.errors, "tarnbeck-cli: " + (folder / "fresh") +
                                 ": has no commit yet on its current branch\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(DiscardEndToEnd, ChoosesNothingByPattern) {
    folder.write("alpha/new.txt", "new");
    const auto result = run(discard({repository, "*.txt", "--yes"}));
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(fs::exists(in("new.txt")));
}

}  // namespace
}  // namespace tarnbeck::testing
