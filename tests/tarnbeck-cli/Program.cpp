#include "Program.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "MachineRights.h"
#include "Pipe.h"

namespace tarnbeck::testing {
namespace {

using std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(60);

int millisecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

struct Terminal {
    FileDescriptor ours;
    FileDescriptor theirs;
};

Terminal openTerminal(unsigned short columns) {
    FileDescriptor ours(posix_openpt(O_RDWR | O_NOCTTY));
    if (!ours || grantpt(ours.get()) != 0 || unlockpt(ours.get()) != 0) {
        throw std::runtime_error("no pseudo terminal");
    }
    FileDescriptor theirs(open(ptsname(ours.get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    fcntl(ours.get(), F_SETFD, FD_CLOEXEC);
    winsize size{};
    size.ws_row = 50;
    size.ws_col = columns;
    ioctl(theirs.get(), TIOCSWINSZ, &size);
    return {std::move(ours), std::move(theirs)};
}

// The ends that the program writes to; the other ends stay here.
struct Streams {
    FileDescriptor ourOutput;
    FileDescriptor ourErrors;
    FileDescriptor output;
    FileDescriptor errors;
    FileDescriptor terminal;
};

Streams openStreams(const ProgramCall& call) {
    Streams streams;
    const bool outputOnTerminal = call.output == ProgramCall::Output::terminal;
    const bool errorsOnTerminal = call.errors == ProgramCall::Errors::terminal;
    Terminal terminal;
    if (outputOnTerminal || errorsOnTerminal) terminal = openTerminal(call.columns);
    Pipe output = makePipe();
    Pipe errors = makePipe();
    streams.output = std::move(output.writeEnd);
    streams.errors = std::move(errors.writeEnd);
    streams.ourOutput = std::move(output.readEnd);
    streams.ourErrors = std::move(errors.readEnd);
    if (call.output == ProgramCall::Output::fullDisk) {
        streams.output = FileDescriptor(open("/dev/full", O_WRONLY | O_CLOEXEC));
    }
    const auto duplicate = [&] {
        return FileDescriptor(fcntl(terminal.theirs.get(), F_DUPFD_CLOEXEC, 3));
    };
    if (outputOnTerminal) streams.output = duplicate();
    if (errorsOnTerminal) streams.errors = duplicate();
    if (outputOnTerminal)
        streams.ourOutput = std::move(terminal.ours);
    else if (errorsOnTerminal)
        streams.ourErrors = std::move(terminal.ours);
    streams.terminal = std::move(terminal.theirs);
    return streams;
}

[[noreturn]] void becomeProgram(const ProgramCall& call, const Streams& streams) {
    setsid();
    if (streams.terminal) ioctl(streams.terminal.get(), TIOCSCTTY, 0);
    const bool hears = call.input == ProgramCall::Input::terminal;
    dup2(hears ? streams.terminal.get() : open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    dup2(streams.output.get(), STDOUT_FILENO);
    dup2(streams.errors.get(), STDERR_FILENO);
    if (call.output == ProgramCall::Output::closed) {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
    }
    if (call.withoutPrivileges) giveUpRootRights();
    std::vector<std::string> environment = call.environment;  // of equal names the first counts
    environment.insert(environment.end(), {"PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8"});
    if (call.home) environment.push_back("HOME=" + *call.home);
    std::vector<std::string> words = {TARNBECK_CLI};
    words.insert(words.end(), call.arguments.begin(), call.arguments.end());
    const auto pointers = [](std::vector<std::string>& texts) {
        std::vector<char*> result;
        for (std::string& text : texts) result.push_back(text.data());
        result.push_back(nullptr);
        return result;
    };
    if (chdir(call.folder.c_str()) == 0) {
        execve(TARNBECK_CLI, pointers(words).data(), pointers(environment).data());
    }
    _exit(127);
}

}  // namespace

RunningProgram::RunningProgram(const ProgramCall& call) {
    Streams streams = openStreams(call);
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("no further process");
    if (process_ == 0) becomeProgram(call, streams);
    output_ = std::move(streams.ourOutput);
    errors_ = std::move(streams.ourErrors);
}

RunningProgram::~RunningProgram() {
    if (process_ < 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

// Takes what comes next on either stream; false when both have ended.
bool RunningProgram::readSome() {
    std::array<pollfd, 2> streams = {
        {{output_ ? output_.get() : -1, POLLIN, 0}, {errors_ ? errors_.get() : -1, POLLIN, 0}}};
    if (!output_ && !errors_) return false;
    if (poll(streams.data(), streams.size(), millisecondsUntil(steady_clock::now() + patience)) <=
        0) {
        ADD_FAILURE() << "the program says nothing and does not end";
        kill(process_, SIGKILL);
        return false;
    }
    const auto take = [](const pollfd& stream, FileDescriptor& descriptor, std::string& text) {
        if (stream.revents == 0) return;
        std::array<char, 65536> buffer{};
        const ssize_t count = read(stream.fd, buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else
            descriptor.close();  // a terminal ends with an error
    };
    take(streams[0], output_, unread_);
    take(streams[1], errors_, result_.errors);
    return true;
}

std::string RunningProgram::readLine() {
    while (unread_.find('\n') == std::string::npos) {
        if (!output_ || !readSome()) return std::exchange(unread_, {});
    }
    const std::size_t end = unread_.find('\n');
    std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    result_.output += line + "\n";
    return line;
}

bool RunningProgram::readUntil(std::string_view text) {
    while (unread_.find(text) == std::string::npos) {
        if (!output_ || !readSome()) return false;
    }
    return true;
}

void RunningProgram::signal(int number) const {
    kill(process_, number);
}

void RunningProgram::type(char character) const {
    if (write(output_.get(), &character, 1) != 1) ADD_FAILURE() << "the terminal takes no key";
}

ProgramResult RunningProgram::wait() {
    while (readSome()) {
    }
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    if (WIFEXITED(status)) result_.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result_.signal = WTERMSIG(status);
    result_.output += std::exchange(unread_, {});
    return std::move(result_);
}

ProgramResult run(const ProgramCall& call) {
    return RunningProgram(call).wait();
}

std::string withoutTerminalCodes(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\033') {
            at = text.find_first_of("mK", at);
            if (at == std::string_view::npos) break;
        } else if (text[at] != '\r') {
            plain += text[at];
        }
    }
    return plain;
}

}  // namespace tarnbeck::testing
