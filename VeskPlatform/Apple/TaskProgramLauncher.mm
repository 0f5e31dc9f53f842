#include "VeskPlatform/Apple/TaskProgramLauncher.hpp"

#import "VeskPlatform/Apple/FoundationFileItems.hpp"
#import "VeskPlatform/Apple/FoundationValues.hpp"
#import "VeskPlatform/Apple/TaskRunningProgram.hpp"
#include "VeskPlatform/Portable/LaunchWords.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {
namespace {

/// The system's failure to enter it would not say which of the two paths it is about.
NSURL* enterableFolder(const std::string& path) {
    const auto item = fileItem(path);
    if (!item) throw PosixError(ENOENT, path);
    if (!item->isDirectory) throw PosixError(ENOTDIR, path);
    // Of a folder this is the right to enter it.
    if (![NSFileManager.defaultManager isExecutableFileAtPath:nsString(path)]) throw PosixError(EACCES, path);
    return [NSURL fileURLWithPath:nsString(path) isDirectory:YES];
}

NSArray<NSString*>* argumentsOf(const ProgramLaunch& launch) {
    NSMutableArray<NSString*>* arguments = [NSMutableArray arrayWithCapacity:launch.arguments.size()];
    for (const std::string& argument : launch.arguments) [arguments addObject:nsString(argument)];
    return arguments;
}

/// What this process has, with the launch's own in place of those of the same names.
NSDictionary<NSString*, NSString*>* environmentOf(const ProgramLaunch& launch) {
    NSMutableDictionary<NSString*, NSString*>* environment =
        [NSMutableDictionary dictionaryWithDictionary:NSProcessInfo.processInfo.environment];
    for (const auto& [name, value] : launch.variables) environment[nsString(name)] = nsString(value);
    return environment;
}

NSTask* taskFor(const ProgramLaunch& launch) {
    NSTask* task = [[NSTask alloc] init];
    task.executableURL = usableFileUrl(launch.executable);
    task.arguments = argumentsOf(launch);
    if (launch.workingDirectory) task.currentDirectoryURL = enterableFolder(*launch.workingDirectory);
    if (!launch.variables.empty()) task.environment = environmentOf(launch);
    return task;
}

/// The system says of any file that it cannot run that it is not there.
int launchErrorNumber(NSError* _Nullable error, const std::string& path) {
    const auto item = fileItem(path);
    const bool mayRun =
        item && item->isRegularFile && [NSFileManager.defaultManager isExecutableFileAtPath:nsString(path)];
    return item && !mayRun ? EACCES : systemErrorNumberOf(error);
}

NSPipe* pipeFor(const ProgramLaunch& launch) {
    NSPipe* pipe = [NSPipe pipe];
    if (pipe == nil) throw PosixError(EMFILE, launch.executable);
    return pipe;
}

/// Handles and not pipes are given to the task, which would close this process's writing ends of pipes.
TaskStreams connectedStreams(NSTask* task, const ProgramLaunch& launch) {
    TaskStreams streams;
    if (launch.takesInput) {
        NSPipe* input = pipeFor(launch);
        task.standardInput = input.fileHandleForReading;
        streams.inputReading = input.fileHandleForReading;
        streams.input = input.fileHandleForWriting;
    }
    streams.output = pipeFor(launch);
    streams.errors = pipeFor(launch);
    task.standardOutput = streams.output.fileHandleForWriting;
    task.standardError = streams.errors.fileHandleForWriting;
    return streams;
}

} // namespace

std::unique_ptr<RunningProgram> TaskProgramLauncher::launch(const ProgramLaunch& launch) {
    checkWords(launch);
    NSTask* task = taskFor(launch);
    TaskStreams streams = connectedStreams(task, launch);
    dispatch_semaphore_t ended = dispatch_semaphore_create(0);
    task.terminationHandler = ^(NSTask*) {
      dispatch_semaphore_signal(ended);
    };
    NSError* error = nil;
    if (![task launchAndReturnError:&error])
        throw PosixError(launchErrorNumber(error, launch.executable), launch.executable);
    [streams.inputReading closeAndReturnError:nil]; // the program has its own
    streams.inputReading = nil;
    return std::make_unique<TaskRunningProgram>(task, ended, streams, launch.executable, stallLimit_);
}

} // namespace vesk
