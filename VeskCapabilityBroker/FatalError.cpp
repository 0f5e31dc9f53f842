#include "VeskCapabilityBroker/FatalError.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <cerrno>
#include <new>
#include <system_error>

namespace vesk {
namespace {

constexpr int internalFailure = 70;

/// Gives exceptions that are no error records the form of one.
std::string rendering(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const ErrorRecord& error) {
        return error.rendering();
    } catch (const std::bad_alloc&) {
        return PosixError(ENOMEM, {}).rendering();
    } catch (const std::system_error& error) {
        const bool posix =
            error.code().category() == std::generic_category() || error.code().category() == std::system_category();
        const char* domain = posix ? "NSPOSIXErrorDomain" : "VeskCapabilityBroker";
        return ErrorRecord(domain, posix ? error.code().value() : internalFailure, error.what()).rendering();
    } catch (const std::exception& error) {
        return ErrorRecord("VeskCapabilityBroker", internalFailure, error.what()).rendering();
    } catch (...) {
        return ErrorRecord("VeskCapabilityBroker", internalFailure, "An unknown failure ended the command.")
            .rendering();
    }
}

} // namespace

std::string fatalErrorLine(const std::exception_ptr& failure) {
    return "[capability-broker] fatal error " + repairedUtf8(rendering(failure)) + "\n";
}

void writeFatalError(const std::exception_ptr& failure, ByteOutput& errorOutput) noexcept {
    try {
        errorOutput.write(fatalErrorLine(failure));
    } catch (const std::bad_alloc&) {
        try {
            errorOutput.write("[capability-broker] fatal error Error Domain=NSPOSIXErrorDomain Code=12 \"Cannot "
                              "allocate memory\" UserInfo={NSLocalizedDescription=Cannot allocate memory}\n");
        } catch (...) {
        }
    } catch (...) {
    }
}

} // namespace vesk
