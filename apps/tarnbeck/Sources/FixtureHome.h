// A home for one run, so that nothing of the user's own is read or written. Everything in it goes
// with it.
#pragma once

#include <string>

namespace tarnbeck {

class FixtureHome {
  public:
    // Makes the folder and lets the environment lead to it: before any other thread is started, and
    // before anybody asks for the home. Throws `std::system_error`.
    FixtureHome();
    ~FixtureHome();
    FixtureHome(const FixtureHome&) = delete;
    FixtureHome& operator=(const FixtureHome&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace tarnbeck
