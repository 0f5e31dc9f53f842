#include "vesk/Linux/LinuxHost.hpp"

int main(int argc, char** argv) {
    vesk::LinuxHost host;
    return vesk::runCompanion({argv + (argc > 0 ? 1 : 0), argv + argc}, host);
}
