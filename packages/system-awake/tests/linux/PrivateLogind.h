// A system bus of the test's own, with a logind on it that is played by `mock-logind`.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CompanionProgram.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {

// Ends with the test, however that ends. From its making on, this process and its children take it
// for the system bus.
class PrivateBus {
  public:
    PrivateBus() : daemon_(command(folder_)) {
        const auto address = daemon_.readLine();
        EXPECT_TRUE(address) << "no bus";
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.value_or("").c_str(), 1);
    }

  private:
    static std::vector<std::string> command(const TemporaryFolder& folder) {
        const std::string settings = folder.write("bus.conf", R"(<busconfig>
  <listen>unix:tmpdir=)" + folder.path() + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)");
        return {"setpriv",  "--pdeathsig",    "KILL", "dbus-daemon", "--config-file=" + settings,
                "--nofork", "--print-address"};
    }

    TemporaryFolder folder_;
    CompanionProgram daemon_;
};

class PrivateLogind {
  public:
    // `program` is the path of mock-logind.
    explicit PrivateLogind(const std::string& program, std::vector<std::string> arguments = {})
        : program_([&] {
              arguments.insert(arguments.begin(), program);
              return arguments;
          }()) {
        EXPECT_EQ(program_.readLine(), "ready");
    }

    // The next thing that happens to a lock: "taken WHAT|WHO|WHY|MODE", "released …", "asked".
    std::optional<std::string> nextEvent() { return program_.readLine(); }

  private:
    PrivateBus bus_;
    CompanionProgram program_;
};

}  // namespace tarnbeck::testing
