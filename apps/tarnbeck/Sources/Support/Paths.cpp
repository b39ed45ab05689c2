#include "Paths.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "SystemPaths.h"
#include "Text.h"

namespace tarnbeck {
namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path;
}

std::optional<std::string> homeOfUser(const std::string& user) {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    const int status = user.empty()
                           ? getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found)
                           : getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &found);
    if (status != 0 || !found || !found->pw_dir) return std::nullopt;
    return std::string(withoutTrailingSlashes(found->pw_dir));
}

std::string currentDirectory() {
    char buffer[PATH_MAX];
    return getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string("/");
}

}  // namespace

std::string userHome() {
    const char* home = std::getenv("HOME");
    if (home && *home) return std::string(withoutTrailingSlashes(home));
    return homeOfUser({}).value_or("/");
}

std::string expandingTilde(std::string_view path, std::string_view home) {
    if (!path.starts_with('~')) return std::string(withoutTrailingSlashes(path));
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::string_view user = path.substr(1, slash - 1);
    const std::string_view rest = path.substr(slash);
    const std::optional<std::string> root =
        user.empty() ? std::string(home) : homeOfUser(std::string(user));
    if (!root) return std::string(withoutTrailingSlashes(path));
    if (*root == "/" && !rest.empty()) return std::string(withoutTrailingSlashes(rest));
    return std::string(withoutTrailingSlashes(*root + std::string(rest)));
}

std::string standardized(std::string_view path, std::string_view base) {
    std::string whole;
    if (!path.starts_with('/')) {
        whole = base.empty() ? currentDirectory() : std::string(base);
        whole += '/';
    }
    whole += path;
    std::vector<std::string_view> components;
    forEachPiece(whole, '/', [&](std::string_view component) {
        if (component == ".") return;
        if (component != "..") {
            components.push_back(component);
        } else if (!components.empty()) {
            components.pop_back();
        }
    });
    std::string result;
    for (const std::string_view component : components) {
        result += '/';
        result += component;
    }
    return withoutSystemPrefix(result.empty() ? "/" : std::move(result));
}

std::string_view lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/") return path;
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view parentPath(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {};
    return slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

}  // namespace tarnbeck
