// That fingerprints look at attributes only: the kernel tells which files were opened.
#include <array>
#include <filesystem>
#include <set>

#include <sys/inotify.h>
#include <unistd.h>

#include "DependencyScanner+Discovery.h"
#include "DependencyScanner+Fingerprints.h"
#include "FileDescriptor.h"
#include "FileSystem.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using namespace DependencyScanner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

// The names of the files, not folders, that anybody opens below a folder.
class OpenedFiles {
  public:
    explicit OpenedFiles(const std::string& root) {
        watch(root);
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_directory()) watch(entry.path());
        }
    }
    std::multiset<std::string> sinceBefore() {
        std::multiset<std::string> names;
        alignas(inotify_event) std::array<char, 65536> buffer{};
        const ssize_t size = read(events_.get(), buffer.data(), buffer.size());
        for (ssize_t offset = 0; offset < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            if (event->len > 0 && !(event->mask & IN_ISDIR)) names.insert(event->name);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return names;
    }

  private:
    void watch(const std::string& path) {
        ASSERT_GE(inotify_add_watch(events_.get(), path.c_str(), IN_OPEN), 0);
    }

    FileDescriptor events_{inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
};

TEST(OpenedFiles, AreNoneForFingerprints) {
    const TemporaryFolder folder;
    folder.write("package.json", "{}");
    folder.write("web/package.json", "{}");
    folder.write("web/pnpm-lock.yaml", "");
    folder.write("api/requirements.txt", "");
    folder.write("api/.venv/pyvenv.cfg", "");
    folder.makeFolder("api/.venv/lib/python3.11/site-packages");
    const auto markers = discoverMarkers(folder.path());
    OpenedFiles opened(folder.path());
    structureFingerprint(folder.path());
    buildFingerprint(folder.path(), markers);
    EXPECT_THAT(opened.sinceBefore(), IsEmpty());
}

TEST(OpenedFiles, AreNoneForDiscoveryButTheWorkspacesList) {
    const TemporaryFolder folder;
    folder.write("pnpm-workspace.yaml", "packages:\n- web\n");
    folder.write("web/package.json", "{}");
    OpenedFiles opened(folder.path());
    discoverMarkers(folder.path());
    EXPECT_THAT(opened.sinceBefore(), ElementsAre("pnpm-workspace.yaml"));
}

TEST(OpenedFiles, AreSeenByThisTestAtAll) {
    const TemporaryFolder folder;
    folder.write("web/package.json", "{}");
    OpenedFiles opened(folder.path());
    readFile(folder / "web/package.json");
    EXPECT_THAT(opened.sinceBefore(), ElementsAre("package.json"));
}

}  // namespace
}  // namespace tarnbeck::testing
