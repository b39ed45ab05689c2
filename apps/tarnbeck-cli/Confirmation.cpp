#include "Confirmation.h"

#include <cerrno>
#include <string>

#include <termios.h>
#include <unistd.h>

#include "Output.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

// Up to the line feed, or to the end of what is typed.
std::string typedLine() {
    std::string line;
    while (true) {
        char character = 0;
        const ssize_t count = read(STDIN_FILENO, &character, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0 || character == '\n') return line;
        line += character;
    }
}

}  // namespace

Confirmation confirmation(std::string_view question) {
    if (isatty(STDIN_FILENO) == 0) return Confirmation::nobodyToAsk;
    tcflush(STDIN_FILENO, TCIFLUSH);
    showPrompt(question);
    const std::string answer =
        lowercased(replacingInvalidUtf8(trimmingWhitespaceAndNewlines(typedLine())));
    return answer == "y" || answer == "yes" ? Confirmation::yes : Confirmation::no;
}

}  // namespace tarnbeck::cli
