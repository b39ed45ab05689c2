#include <atomic>
#include <csignal>
#include <filesystem>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>

#include "AtomicFile.h"
#include "FileSystem.h"
#include "TemporaryFolder.h"

namespace tarnbeck {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;

class AtomicFile : public ::testing::Test {
  protected:
    mode_t modeOf(const std::string& path) const {
        struct stat information {};
        EXPECT_EQ(stat(path.c_str(), &information), 0) << path;
        return information.st_mode & 07777;
    }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), {}));
    }

    testing::TemporaryFolder folder_;
    const std::string path_ = folder_ / "file";
};

// As long as this lives, no file of this process grows beyond `bytes`: a disk that fills up.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{.rlim_cur = bytes, .rlim_max = former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit former_{};
    void (*formerHandler_)(int);
};

TEST_F(AtomicFile, IsMadeWithTheGivenMode) {
    EXPECT_EQ(writeFileAtomically(path_, "new", 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), "new");
    EXPECT_EQ(modeOf(path_), 0600U);
}

TEST_F(AtomicFile, ModeOfANewOneIsCutByTheUmask) {
    const mode_t former = umask(027);
    writeFileAtomically(path_, "new", 0666);
    umask(former);
    EXPECT_EQ(modeOf(path_), 0640U);
}

TEST_F(AtomicFile, ReplacesTheOldContentAndKeepsItsMode) {
    folder_.write("file", "old and longer");
    chmod(path_.c_str(), 0640);
    EXPECT_EQ(writeFileAtomically(path_, "new", 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), "new");
    EXPECT_EQ(modeOf(path_), 0640U);
}

TEST_F(AtomicFile, WritesManyPiecesBehindEachOther) {
    std::vector<std::string> texts;
    std::string whole;
    for (int index = 0; index < 5000; ++index) {
        texts.push_back(index % 3 == 0 ? "" : std::to_string(index));
        whole += texts.back();
    }
    const std::vector<std::string_view> pieces(texts.begin(), texts.end());
    EXPECT_EQ(writeFileAtomically(path_, pieces, 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), whole);
}

TEST_F(AtomicFile, NoPiecesAreAnEmptyFile) {
    EXPECT_EQ(writeFileAtomically(path_, std::vector<std::string_view>(), 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), "");
}

TEST_F(AtomicFile, PieceThatDoesNotFitLeavesTheOldFile) {
    folder_.write("file", "old");
    const std::string text(60'000, 'x');
    {
        const FileSizeLimit limit(100'000);
        EXPECT_EQ(writeFileAtomically(path_, std::vector<std::string_view>{text, text}, 0600),
                  "File too large");
    }
    EXPECT_EQ(contentOf(path_), "old");
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(AtomicFile, WritesAnyBytesOfAnyLength) {
    std::string bytes;
    for (int index = 0; index < 3'000'000; ++index) bytes += static_cast<char>(index * 7);
    EXPECT_EQ(writeFileAtomically(path_, bytes, 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), bytes);
    EXPECT_EQ(writeFileAtomically(path_, "", 0600), std::nullopt);
    EXPECT_EQ(contentOf(path_), "");
}

TEST_F(AtomicFile, LeavesNothingBesideItself) {
    writeFileAtomically(path_, "a", 0600);
    writeFileAtomically(path_, "b", 0600);
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(AtomicFile, ThroughALinkReplacesWhatItLeadsTo) {
    folder_.write("real/target", "old");
    fs::create_symlink("real/target", path_);
    EXPECT_EQ(writeFileAtomically(path_, "new", 0600), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(contentOf(folder_ / "real/target"), "new");
}

TEST_F(AtomicFile, RelativeLinkOfARelativePathLeadsFromItsFolder) {
    folder_.write("target", "old");
    fs::create_symlink("target", path_);
    const fs::path former = fs::current_path();
    fs::current_path(folder_.path());
    const auto failure = writeFileAtomically("file", "new", 0600);
    fs::current_path(former);
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(contentOf(folder_ / "target"), "new");
}

TEST_F(AtomicFile, MissingFolderIsAFailureInTheSystemsWords) {
    EXPECT_EQ(writeFileAtomically(folder_ / "gone/file", "new", 0600), "No such file or directory");
}

TEST_F(AtomicFile, FolderInItsPlaceIsAFailureAndNothingIsLeft) {
    folder_.makeFolder("file/inner");
    EXPECT_EQ(writeFileAtomically(path_, "new", 0600), "Is a directory");
    EXPECT_EQ(filesInFolder(), 1U);
    EXPECT_TRUE(fs::is_directory(path_));
}

TEST_F(AtomicFile, WriteThatBreaksOffKeepsTheOldFileAndLeavesNothing) {
    folder_.write("file", "old");
    std::optional<std::string> failure;
    {
        const FileSizeLimit limit(100'000);
        failure = writeFileAtomically(path_, std::string(1'000'000, 'x'), 0600);
    }
    EXPECT_EQ(failure, "File too large");
    EXPECT_EQ(contentOf(path_), "old");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(AtomicFile, WritersAtTheSameTimeDoNotMix) {
    const auto writeMany = [this](char letter) {
        for (int round = 0; round < 20; ++round) {
            EXPECT_EQ(writeFileAtomically(path_, std::string(50'000, letter), 0600), std::nullopt);
        }
    };
    std::thread other([&] { writeMany('b'); });
    writeMany('a');
    other.join();
    const std::string content = contentOf(path_);
    EXPECT_EQ(content, std::string(50'000, content.at(0)));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(AtomicFile, ReaderAtTheSameTimeSeesTheOldOrTheNewWhole) {
    writeFileAtomically(path_, std::string(50'000, 'a'), 0600);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int round = 0; round < 40; ++round) {
            writeFileAtomically(path_, std::string(50'000, round % 2 ? 'a' : 'b'), 0600);
        }
        done = true;
    });
    while (!done) {
        const auto content = readFile(path_);
        EXPECT_TRUE(content && *content == std::string(50'000, content->at(0)));
    }
    writer.join();
}

}  // namespace
}  // namespace tarnbeck
