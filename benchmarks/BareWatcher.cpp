#include "BareWatcher.h"

#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace tarnbeck::benchmark {
namespace {

using Excludes = std::set<std::string, std::less<>>;

bool isDotName(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

std::size_t walk(int inotify, int parent, const char* name, std::string& path,
                 const Excludes& excludes) {
    if (inotify_add_watch(inotify, path.c_str(), bareMask) < 0) return 0;
    std::size_t count = 1;
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    DIR* entries = folder < 0 ? nullptr : fdopendir(folder);
    if (!entries) return count;
    const std::size_t length = path.size();
    const bool isGitFolder = std::string_view(name) == ".git";
    while (const dirent* entry = readdir(entries)) {
        if (entry->d_type != DT_DIR || isDotName(entry->d_name)) continue;
        const std::string_view child(entry->d_name);
        if (excludes.contains(child) || (isGitFolder && child == "objects")) continue;
        path += '/';
        path += child;
        count += walk(inotify, folder, entry->d_name, path, excludes);
        path.resize(length);
    }
    closedir(entries);
    return count;
}

}  // namespace

std::size_t watchBarely(const FileDescriptor& inotify, const std::string& root,
                        const Excludes& excludes) {
    std::string path = root;
    return walk(inotify.get(), AT_FDCWD, root.c_str(), path, excludes);
}

std::size_t readBarely(const FileDescriptor& inotify, std::string_view last) {
    alignas(inotify_event) static char buffer[65536];
    std::size_t count = 0;
    while (true) {
        const ssize_t length = read(inotify.get(), buffer, sizeof buffer);
        for (const char* at = buffer; at < buffer + length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            ++count;
            if (event->len > 0 && last == event->name) return count;
            at += sizeof(inotify_event) + event->len;
        }
    }
}

}  // namespace tarnbeck::benchmark
