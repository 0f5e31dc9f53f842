#include "vesk/Apple/AppleHost.hpp"

int main(int argc, char** argv) {
    @autoreleasepool {
        vesk::AppleHost host;
        return vesk::runCompanion({argv + (argc > 0 ? 1 : 0), argv + argc}, host);
    }
}
