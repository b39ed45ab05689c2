// The program's commands: each does its work, prints, and gives the exit status.
#pragma once

#include "CommandLine.h"
#include "Companion.h"

namespace tarnbeck::cli {

int runStatus(Companion& companion, const StatusArguments& arguments);
int runWatch(Companion& companion, const WatchArguments& arguments);
int runIssues(Companion& companion, const IssuesArguments& arguments);
int runDeps(Companion& companion, const DepsArguments& arguments);
int runInstall(Companion& companion, const InstallArguments& arguments);
int runSync(Companion& companion, const SyncArguments& arguments);
int runDiscover(Companion& companion, const DiscoverArguments& arguments);
int runAdd(Companion& companion, const AddArguments& arguments);
int runRemove(Companion& companion, const RemoveArguments& arguments);
int runConfig(Companion& companion, const ConfigArguments& arguments);
int runDiscard(Companion& companion, const DiscardArguments& arguments);
int runLog(Companion& companion, const LogArguments& arguments);
int runDoctor(Companion& companion, const DoctorArguments& arguments);

}  // namespace tarnbeck::cli
