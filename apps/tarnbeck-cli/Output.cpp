#include "Output.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "ExitStatus.h"
#include "FileSystem.h"
#include "Text.h"

namespace tarnbeck::cli {
namespace {

[[noreturn]] void endForFailedOutput(int error) {
    if (error == EPIPE) endForLostReader();
    complain("can't write: " + systemErrorText(error));
    std::_Exit(exitFailure);
}

std::optional<std::size_t> columnsOf(int descriptor) {
    if (isatty(descriptor) == 0) return std::nullopt;
    winsize size{};
    const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : std::size_t{80};
}

void writeToStandardError(std::string_view text) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

void fillMissingStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) >= 0) continue;
        open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);  // takes the lowest number
    }
}

bool print(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EINTR) {
            return false;
        } else {
            endForFailedOutput(errno);
        }
    }
    return true;
}

void endForLostReader() {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    std::_Exit(128 + SIGPIPE);
}

void complain(std::string_view message) {
    writeToStandardError(fmt::format("tarnbeck-cli: {}\n", printable(message)));
}

void complainLineByLine(std::string_view message) {
    bool isFirst = true;
    while (!message.empty()) {
        const std::string_view line = takingLineAtNewline(message);
        if (line.empty()) continue;
        complain(fmt::format("{}{}", isFirst ? "" : "  ", line));
        isFirst = false;
    }
}

void passToStandardError(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(STDERR_FILENO, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void showPrompt(std::string_view question) {
    writeToStandardError(question);
}

bool standardOutputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

std::optional<std::size_t> terminalColumns() {
    return columnsOf(STDOUT_FILENO);
}

bool usesColor(ColorChoice choice) {
    switch (choice) {
        case ColorChoice::always:
            return true;
        case ColorChoice::never:
            return false;
        case ColorChoice::automatic:
            break;
    }
    const char* noColor = std::getenv("NO_COLOR");
    return standardOutputIsTerminal() && !(noColor && *noColor);
}

ProgressLine::ProgressLine() : enabled_(isatty(STDERR_FILENO) != 0) {}

void ProgressLine::show(std::string_view text) {
    if (!enabled_) return;
    shown_ = true;
    const std::size_t columns = columnsOf(STDERR_FILENO).value_or(80);
    writeToStandardError("\r\033[K" +
                         elidedAtEnd(printable(text), std::max<std::size_t>(columns, 2) - 1));
}

void ProgressLine::clear() {
    if (shown_) writeToStandardError("\r\033[K");
    shown_ = false;
}

}  // namespace tarnbeck::cli
