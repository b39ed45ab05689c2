#include <array>
#include <cerrno>

#include <poll.h>
#include <unistd.h>

#include "Commands.h"
#include "ExitStatus.h"
#include "FileChangeEvent.h"
#include "LogReader.h"
#include "Output.h"

namespace tarnbeck::cli {
namespace {

constexpr std::size_t usualLines = 10;

// As it is for another program, harmless on a terminal.
void printLog(std::string_view text) {
    if (standardOutputIsTerminal()) {
        print(printableLines(text));
    } else {
        print(text);
    }
}

// Until something happens to the log; ends the program when nobody reads what it prints.
void waitFor(const FileChangeEvent& event) {
    std::array<pollfd, 2> descriptors = {{{event.descriptor(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    while (poll(descriptors.data(), descriptors.size(), -1) < 0 && errno == EINTR) {
    }
    if ((descriptors[1].revents & (POLLERR | POLLHUP)) != 0) endForLostReader();
}

int follow(LogReader& reader, FileChangeEvent& event) {
    while (event.rearm()) {
        printLog(reader.readNew());
        waitFor(event);
    }
    complain("the folder of the log has gone");
    return exitFailure;
}

int printAndPerhapsFollow(const std::string& path, const LogArguments& arguments,
                          FileChangeEvent* event) {
    LogReader reader(path);
    const auto text = reader.readAll();
    if (!text) {
        complain(path + ": " + text.error());
        return exitFailure;
    }
    if (text->empty()) complain("there is no log yet at " + path);
    const auto lines = arguments.lines ? arguments.lines
                       : event         ? std::optional(usualLines)
                                       : std::nullopt;
    printLog(lines ? lastLines(*text, *lines) : std::string_view(*text));
    return event ? follow(reader, *event) : exitSuccess;
}

}  // namespace

int runLog(Companion& companion, const LogArguments& arguments) {
    const std::string& path = companion.log().location();
    if (!arguments.follow) return printAndPerhapsFollow(path, arguments, nullptr);
    const auto event = FileChangeEvent::open(path);
    if (!event) {
        complain(path + ": can't be followed: " + event.error());
        return exitFailure;
    }
    return printAndPerhapsFollow(path, arguments, event->get());
}

}  // namespace tarnbeck::cli
