#include "VeskCapabilityBroker/ProgramEntry.hpp"
#import "VeskPlatform/Apple/ApplePlatform.hpp"

int main(int count, char** values) {
    @autoreleasepool {
        vesk::prepareProcess();
        vesk::ApplePlatform platform;
        return vesk::runProgram(count, values, platform);
    }
}
