#include "VeskPlatform/Apple/FinishedTask.hpp"

#include "VeskPlatform/Apple/DispatchSerialQueue.hpp"
#include "VeskPlatform/Apple/FoundationErrors.hpp"
#include "VeskPlatform/Apple/FoundationValues.hpp"

#import <Foundation/Foundation.h>

namespace vesk {
namespace {

NSTask* newTask(const std::string& program, const std::vector<std::string>& arguments) {
    NSMutableArray<NSString*>* texts = [NSMutableArray array];
    for (const std::string& argument : arguments) [texts addObject:nsString(argument)];
    NSTask* task = [[NSTask alloc] init];
    task.executableURL = fileUrl(program);
    task.arguments = texts;
    return task;
}

void launch(NSTask* task) {
    NSError* error = nil;
    if (![task launchAndReturnError:&error]) throwError(error);
}

/// What cannot be read counts as nothing written.
std::string everythingIn(NSPipe* pipe) {
    NSData* data = [pipe.fileHandleForReading readDataToEndOfFileAndReturnError:nil];
    return data == nil ? std::string() : bytes(data);
}

} // namespace

void startTask(const std::string& program, const std::vector<std::string>& arguments) {
    @autoreleasepool {
        launch(newTask(program, arguments));
    }
}

int exitStatusOfTask(const std::string& program, const std::vector<std::string>& arguments) {
    @autoreleasepool {
        NSTask* task = newTask(program, arguments);
        launch(task);
        [task waitUntilExit];
        return task.terminationStatus;
    }
}

FinishedTask finishedTask(const std::string& program, const std::vector<std::string>& arguments) {
    @autoreleasepool {
        NSTask* task = newTask(program, arguments);
        NSPipe* output = [NSPipe pipe];
        NSPipe* errors = [NSPipe pipe];
        task.standardOutput = output;
        task.standardError = errors;
        launch(task);
        FinishedTask finished;
        // A program that has filled one pipe waits for its reader, so both are read at once.
        DispatchSerialQueue reader("app.veskhq.program-errors");
        reader.async([errors, &finished] { finished.errors = everythingIn(errors); });
        finished.output = everythingIn(output);
        reader.drain();
        [task waitUntilExit];
        finished.status = task.terminationStatus;
        return finished;
    }
}

} // namespace vesk
