#include "DependencyScanner+PythonRequirements.h"
#include "TemporaryFolder.h"

namespace tarnbeck::testing {
namespace {

using DependencyScanner::pythonRequirements;

TEST(PythonRequirements_LargeFiles, FiftyMegabytesOfCommentsAreRead) {
    const TemporaryFolder project;
    std::string text;
    while (text.size() < 50'000'000) text += "# nothing but words, many of them, in long lines\n";
    project.write("requirements.txt", text + "a==1\n");
    EXPECT_EQ(pythonRequirements(project.path()).size(), 1);
}

TEST(PythonRequirements_LargeFiles, LineOfFiftyMegabytesIsRead) {
    const TemporaryFolder project;
    project.write("requirements.txt", "a==1\n" + std::string(50'000'000, 'x') + "==1\n");
    EXPECT_EQ(pythonRequirements(project.path()).size(), 2);
}

TEST(PythonRequirements_LargeFiles, LineOfFiftyMegabytesThatMatchesNothingIsPassedOver) {
    const TemporaryFolder project;
    project.write("requirements.txt", "a==1\n" + std::string(50'000'000, 'x') + "=1\n");
    EXPECT_EQ(pythonRequirements(project.path()).size(), 1);
}

}  // namespace
}  // namespace tarnbeck::testing
