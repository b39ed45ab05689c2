// Reading a storm of 100,000 files that are made and written: the processor time of the thread that
// reads against that of a plain reader of the same events, and what the storm does to the memory.
// (Linux only.)
#include <algorithm>
#include <atomic>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include "BareWatcher.h"
#include "MemoryFolder.h"
#include "Report.h"
#include "SystemFileEvents.h"

using namespace tarnbeck;
using namespace tarnbeck::benchmark;

namespace {

constexpr int files = 100'000;
constexpr int rounds = 7;
constexpr std::string_view lastName = "last";

void writeFile(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    if (!file || write(file.get(), "text", 4) != 4) std::abort();
}

void storm(const std::string& folder) {
    std::string path = folder + "/file";
    const std::size_t length = path.size();
    for (int index = 0; index < files; ++index) {
        path.resize(length);
        path += std::to_string(index);
        writeFile(path);
    }
}

double ownProcessorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double bareProcessorTime() {
    const MemoryFolder folder;
    const FileDescriptor inotify(inotify_init1(IN_CLOEXEC));
    watchBarely(inotify, folder.path(), {});
    double time = 0;
    std::thread reader([&] {
        readBarely(inotify, lastName);
        time = ownProcessorTime();
    });
    storm(folder.path());
    writeFile(folder.path() + "/" + std::string(lastName));
    reader.join();
    return time;
}

// A line of the process's state in bytes.
std::size_t stateBytes(std::string_view name) {
    std::ifstream lines("/proc/self/status");
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name)) return std::stoul(line.substr(name.size())) * 1024;
    }
    return 0;
}

struct Storm {
    double processorTime = 0;
    double memoryGrowth = 0;
};

Storm ownStorm() {
    const MemoryFolder folder;
    std::atomic<double> time = 0;
    std::atomic<int> calls = 0;
    const std::set<std::string, std::less<>> none;
    const auto stream = makeFileEvents()->open(
        {.roots = {folder.path()}, .excludes = none, .deliver = [&](const FileEventBatch&) {
             time = ownProcessorTime();
             ++calls;
             calls.notify_all();
         }});
    if (!stream) std::abort();
    std::ofstream("/proc/self/clear_refs") << 5;  // the highest mark begins anew
    const std::size_t before = stateBytes("VmRSS:");
    storm(folder.path());
    // When the second delivery from here on comes, all of the storm has been read.
    for (const char* name : {"last", "very-last"}) {
        const int seen = calls;
        writeFile(folder.path() + "/" + name);
        calls.wait(seen);
    }
    const std::size_t after = stateBytes("VmHWM:");
    return {time, static_cast<double>(after) - static_cast<double>(before)};
}

}  // namespace

int main() {
    double bare = 1e9;
    Storm own{1e9, 0};
    ownStorm();
    for (int round = 0; round < rounds; ++round) {
        bare = std::min(bare, bareProcessorTime());
        const Storm one = ownStorm();
        own.processorTime = std::min(own.processorTime, one.processorTime);
        own.memoryGrowth = std::max(own.memoryGrowth, one.memoryGrowth);
    }
    Report report;
    report.note(fmt::format("{:.3f} s of processor time, a plain reader {:.3f} s",
                            own.processorTime, bare));
    report.atMost("reading a storm / a plain reader", own.processorTime / bare, 1.5);
    report.atMost("memory that a storm takes, MiB", own.memoryGrowth / (1 << 20), 1);
    return report.exitStatus();
}
