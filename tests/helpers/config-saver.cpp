// Saves two configurations in turn, for ever, until it is killed in the middle of it.
#include <cstdio>

#include "AppConfiguration.h"

int main(int argc, char** argv) {
    if (argc != 2) return 64;
    const tarnbeck::ConfigurationPlace place{.home = argv[1], .report = [](std::string_view) {}};
    tarnbeck::AppConfiguration few;
    few.repoPaths = {"/few"};
    tarnbeck::AppConfiguration many;
    many.repoPaths.assign(20000, "/one/of/many/repositories/with/a/long/path");
    few.save(place);
    std::puts("saving");
    std::fflush(stdout);
    while (true) {
        many.save(place);
        few.save(place);
    }
}
