#include "PathTrail.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

#include "Paths.h"

namespace tarnbeck {
namespace {

constexpr int mostLinks = 40;  // where the system gives up as well

// The components that are still to be passed, the next one last.
void pushComponents(std::string_view path, std::vector<std::string>& components) {
    std::vector<std::string> forwards;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t slash = std::min(path.find('/', at), path.size());
        if (slash > at) forwards.emplace_back(path.substr(at, slash - at));
        at = slash + 1;
    }
    components.insert(components.end(), forwards.rbegin(), forwards.rend());
}

enum class Kind { missing, link, other };

Kind kindOf(const std::string& path, std::string& target) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0) return errno == EINVAL ? Kind::other : Kind::missing;
    target.assign(buffer.data(), static_cast<std::size_t>(length));
    return Kind::link;
}

}  // namespace

PathStep followTrail(const std::string& path, const std::function<void(const PathStep&)>& passes) {
    std::vector<std::string> ahead;
    pushComponents(path, ahead);
    PathStep step;
    std::string folder = "/";
    for (int links = 0; !ahead.empty() && links <= mostLinks;) {
        std::string name = std::move(ahead.back());
        ahead.pop_back();
        if (name == ".") continue;
        if (name == "..") {
            folder = std::string(parentPath(folder));
            continue;
        }
        step = {folder, std::move(name)};
        passes(step);
        std::string target;
        const Kind kind = kindOf(step.path(), target);
        if (kind == Kind::missing) break;
        if (kind == Kind::other) {
            folder = step.path();
        } else {
            ++links;
            if (target.starts_with('/')) folder = "/";
            pushComponents(target, ahead);
        }
    }
    return step;
}

}  // namespace tarnbeck
