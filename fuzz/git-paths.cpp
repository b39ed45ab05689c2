#include <string>

#include "Fuzzing.h"
#include "GitPaths.h"

namespace {

// Every byte in git's octal form.
std::string quoted(std::string_view name) {
    std::string text = "\"";
    for (const char each : name) {
        const auto byte = static_cast<unsigned char>(each);
        text += '\\';
        for (const int shift : {6, 3, 0}) text += static_cast<char>('0' + ((byte >> shift) & 7));
    }
    return text + "\"";
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnbeck::GitPaths;
    const std::string_view text = textOf(data, size);
    const std::string name = unquoted(text);
    promise(name.size() <= text.size());
    promise(text.starts_with('"') || name == text);
    promise(unquoted(quoted(text)) == text);
    const std::string specification = specificationOf(name);
    promise(specification.ends_with(name));
    promise(specification == name || specification == ":(literal)" + name);
    return 0;
}
