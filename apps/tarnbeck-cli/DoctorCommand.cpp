#include "Commands.h"
#include "DoctorProbe.h"
#include "ExitStatus.h"
#include "Output.h"
#include "RepositoryJson.h"

namespace tarnbeck::cli {

int runDoctor(Companion& companion, const DoctorArguments& arguments) {
    const auto findings = findingsOf(gatheredFacts(companion, environmentVariables()));
    if (!arguments.json) {
        print(doctorText(findings));
        return exitSuccess;
    }
    std::vector<JsonValue> elements;
    for (const Finding& finding : findings) elements.push_back(encodedJson(finding, outputStyle));
    print(jsonArrayText(elements));
    return exitSuccess;
}

}  // namespace tarnbeck::cli
