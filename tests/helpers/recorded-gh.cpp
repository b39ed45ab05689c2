// Stands in for `gh`. All that it may know is its home: `gh/plays/RESOURCE.N` says what the N-th
// call for the resource plays (`gh/plays/RESOURCE` where there is none), and `gh/seen/RESOURCE.N`
// is where it writes down how it was called. The first line of a play is its role, and what follows
// is printed as it is. Without a play it prints an empty list.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include <unistd.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;

int countedCall(const fs::path& seen, const std::string& resource) {
    int number = 1;
    while (fs::exists(seen / (resource + "." + std::to_string(number)))) ++number;
    return number;
}

void writeDown(const fs::path& file, int argc, char** argv) {
    std::ofstream notes(file);
    for (int index = 1; index < argc; ++index) notes << "argument=" << argv[index] << '\n';
    for (char** entry = environ; *entry; ++entry) notes << "environment=" << *entry << '\n';
}

[[noreturn]] void hang() {
    while (true) pause();
}

int play(const std::string& role, const std::string& content) {
    if (role == "hang") hang();
    if (role == "print-and-hang" || role == "ignore-sigterm") {
        if (role == "ignore-sigterm") std::signal(SIGTERM, SIG_IGN);
        std::cout << content << std::flush;
        hang();
    }
    if (role == "print") return std::cout << content << std::flush ? 0 : 1;
    if (role == "print-after-many-errors") {
        std::cerr << std::string(std::size_t{1} << 20, 'e') << std::flush;
        return std::cout << content << std::flush ? 0 : 1;
    }
    if (role == "leave-grandchild") {
        if (fork() == 0) {
            sleep(6);
            _exit(0);
        }
        return std::cout << content << std::flush ? 0 : 1;
    }
    if (role.starts_with("fail ")) {
        std::cerr << content << std::flush;
        return std::stoi(role.substr(5));
    }
    std::cerr << "recorded-gh: unknown role " << role << '\n';
    return 64;
}

}  // namespace

int main(int argc, char** argv) {
    const char* home = std::getenv("HOME");
    if (!home || argc < 2) return 64;
    const fs::path place = fs::path(home) / "gh";
    const std::string resource = argv[1];
    fs::create_directories(place / "seen");
    const std::string number = std::to_string(countedCall(place / "seen", resource));
    writeDown(place / "seen" / (resource + "." + number), argc, argv);
    std::ifstream script(place / "plays" / (resource + "." + number));
    if (!script) script.open(place / "plays" / resource);
    if (!script) return play("print", "[]");
    std::string role;
    std::getline(script, role);
    return play(role, {std::istreambuf_iterator<char>(script), {}});
}
