// The small programs for Python, each run by a real interpreter in an environment of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Json.h"
#include "PythonPrograms.h"
#include "RealPythonFixture.h"

namespace tarnbeck::testing {

// Compared as JSON: order of keys and blanks count for nothing.
inline void expectJson(const CommandResult& result, std::string_view expected) {
    EXPECT_EQ(result.terminationStatus, 0) << result.stderr;
    const auto printed = parsedJson(result.stdout);
    ASSERT_TRUE(printed) << result.stdout;
    EXPECT_EQ(*printed, *parsedJson(expected)) << result.stdout;
}

inline void expectFailure(const CommandResult& result) {
    EXPECT_NE(result.terminationStatus, 0);
    EXPECT_EQ(result.stdout, "");
}

class PythonProgram : public RealPythonFixture {
  protected:
    void SetUp() override {
        RealPythonFixture::SetUp();
        if (!IsSkipped()) python = needsPip() ? makeEnvironment() : makeEnvironmentWithoutPip();
    }
    virtual bool needsPip() const { return true; }

    // An installed package, as its metadata alone.
    void installed(const std::string& name, const std::string& version,
                   const std::vector<std::string>& requires_ = {}) {
        std::string metadata = "Metadata-Version: 2.1\nName: " + name + "\nVersion: " + version +
                               "\nProvides-Extra: x\n";
        for (const std::string& requirement : requires_) {
            metadata += "Requires-Dist: " + requirement + "\n";
        }
        folder_.write(sitePackages() + "/" + name + "-" + version + ".dist-info/METADATA",
                      metadata);
    }
    // Lets `pip inspect` print this, whatever is installed.
    void pipInspects(const std::string& json) {
        folder_.write(sitePackages() + "/pip/__main__.py", "print('''" + json + "''')\n");
    }
    std::string sitePackages() {
        const auto told =
            run(python, {"-c", "import sysconfig; print(sysconfig.get_path('purelib'))"});
        return told.stdout.substr(folder_.path().size() + 1);
    }
    // Lets the interpreter look for modules in this folder too, as an installation in place does.
    void installInPlace(const std::string& folder) {
        folder_.write(sitePackages() + "/project.pth", folder_.makeFolder(folder) + "\n");
    }
    // A requirement file of the project, as the programs are told of it.
    std::string file(const std::string& name, const std::string& content) {
        return folder_.write("repo/" + name, content);
    }
    std::string list(const std::vector<std::string>& texts) {
        JsonArray array;
        for (const std::string& text : texts) array.emplace_back(text);
        return jsonText(array);
    }

    std::string python;
};

}  // namespace tarnbeck::testing
