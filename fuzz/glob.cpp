#include <string_view>

#include "DependencyScanner+Discovery.h"
#include "Fuzzing.h"

namespace {

using Text = std::string_view;

// What a pattern means, told as plainly as can be: it takes exponential time.
bool partMatches(Text part, Text pattern) {
    if (pattern.empty()) return part.empty();
    if (pattern.front() == '*') {
        return partMatches(part, pattern.substr(1)) ||
               (!part.empty() && partMatches(part.substr(1), pattern));
    }
    return !part.empty() && part.front() == pattern.front() &&
           partMatches(part.substr(1), pattern.substr(1));
}

// From the beginning of a part on, or nothing behind the last one.
struct Rest {
    Text text;
    bool isOver = false;

    Text part() const { return text.substr(0, text.find('/')); }
    Rest behind() const {
        const std::size_t slash = text.find('/');
        return slash == Text::npos ? Rest{{}, true} : Rest{text.substr(slash + 1)};
    }
};

bool matches(const Rest& path, const Rest& pattern) {
    if (pattern.isOver) return path.isOver;
    if (pattern.part() == "**") {
        return matches(path, pattern.behind()) || (!path.isOver && matches(path.behind(), pattern));
    }
    return !path.isOver && partMatches(path.part(), pattern.part()) &&
           matches(path.behind(), pattern.behind());
}

}  // namespace

// A path, a line feed, and a pattern.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Text text = textOf(data, size);
    const std::size_t end = text.find('\n');
    if (end == Text::npos) return 0;
    const Text path = text.substr(0, end);
    const Text pattern = text.substr(end + 1);
    const bool verdict = tarnbeck::DependencyScanner::globMatch({.path = path, .pattern = pattern});
    if (size <= 32) promise(verdict == matches({path}, {pattern}));
    return 0;
}
