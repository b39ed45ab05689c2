// Of many files whose names mean something to git, to a shell or to a terminal, one is discarded:
// exactly that one changes.
#include <filesystem>

#include "DiscardFixture.h"

namespace tarnbeck::testing {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string>& nastyNames() {
    static const std::vector<std::string> names = {
        "a",        "aa",          "ab",        "*",
        "**",       "a*",          "?",         "a?",
        "[a]",      "[!a]",        "a\\b",      "\\a",
        "\\*",      ":a",          ":!a",       ":^a",
        ":(top)a",  ":(literal)a", ":(glob)**", ":(exclude)a",
        ":/a",      ":/*",         "\"a\"",     "\"",
        "'a'",      "a\nb",        "a\tb",      "a\rb",
        "\033[31m", "\177",        "ä",         "a\u0308",
        "\xFF",     "日本",        "a ",        " a",
        "a b",      "a -> b",      "-a",        "-f",
        "--",       "a.d/a",       "a.d/*",     "a.d/b/a",
        "a.dx",     "{a,b}",       "$(a)",      "~",
        "#",        "!a",          "%s",        "a;b",
        "HEAD",     "main",        "@",         std::string(200, 'n'),
    };
    return names;
}

struct NamesCase {
    std::string status;
    bool quotesAll;  // core.quotePath
};

class Discard_Names : public DiscardTest, public ::testing::WithParamInterface<NamesCase> {
  protected:
    void SetUp() override {
        gitHere({"config", "core.quotePath", GetParam().quotesAll ? "true" : "false"});
        if (isInCommit()) {
            for (const std::string& name : nastyNames()) write(name, "committed " + name);
            gitHere({"add", "-A"});
            gitHere({"commit", "-q", "-m", "All names"});
        }
        for (const std::string& name : nastyNames()) change(name);
    }

    bool isInCommit() const { return GetParam().status != "??" && GetParam().status != "A"; }

    // Gives the file the change that is to be discarded.
    void change(const std::string& name) {
        const std::string& status = GetParam().status;
        if (status == "D") {
            fs::remove(in(name));
            return;
        }
        write(name, "first " + name);
        if (status == "A" || status == "MM") gitHere({"add", "--", ":(literal)" + name});
        if (status == "MM") write(name, "second " + name);
    }

    // The files of the tree when the changes of this one are discarded.
    Tree withoutChangeOf(const std::string& name, Tree files) const {
        if (isInCommit()) {
            files[name] = std::to_string(S_IFREG | 0644) + " committed " + name;
        } else {
            files.erase(name);
        }
        return files;
    }

    // A folder may go with its last file, and comes back with it.
    Tree files() const {
        Tree tree = treeAt(repository);
        const std::string folderMode = std::to_string(S_IFDIR | 0755) + " ";
        std::erase_if(tree, [&](const auto& each) { return each.second == folderMode; });
        return tree;
    }
};

TEST_P(Discard_Names, ExactlyTheNamedFileChanges) {
    const Tree before = files();
    const std::vector<FileChange> rows = changesIn(repository);
    ASSERT_EQ(rows.size(), nastyNames().size());
    for (const std::string& name : nastyNames()) {
        SCOPED_TRACE(name);
        const FileChange row = rowOf(rows, name);
        ASSERT_EQ(row.status, GetParam().status);
        ASSERT_EQ(discard(row.filePath, row.status), std::nullopt);
        ASSERT_EQ(files(), withoutChangeOf(name, before));
        std::vector<FileChange> others = rows;
        std::erase(others, row);
        ASSERT_EQ(changesIn(repository), others);
        change(name);
    }
}

INSTANTIATE_TEST_SUITE_P(EachStatus, Discard_Names,
                         ::testing::Values(NamesCase{"??", true}, NamesCase{"??", false},
                                           NamesCase{"M", true}, NamesCase{"M", false},
                                           NamesCase{"MM", true}, NamesCase{"A", true},
                                           NamesCase{"D", false}));

}  // namespace
}  // namespace tarnbeck::testing
