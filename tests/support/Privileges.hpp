#pragma once

#include <linux/capability.h>
#include <string>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vesk::test {

/// The words before a program that make file permissions hold for it also where the tests run as root; none for
/// everybody else. The program keeps its user, so that it still reaches the tests' own files.
inline std::vector<std::string> withoutPrivileges() {
    if (::geteuid() != 0) return {};
    return {"/usr/bin/setpriv", "--bounding-set=-dac_override,-dac_read_search"};
}

/// Makes file permissions hold for this thread, and the threads it starts, for as long as the object lives.
class WithoutPrivileges {
public:
    WithoutPrivileges() {
        call(SYS_capget, saved_);
        __user_cap_data_struct reduced[2] = {saved_[0], saved_[1]};
        reduced[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        call(SYS_capset, reduced);
    }
    ~WithoutPrivileges() {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        ::syscall(SYS_capset, &header, saved_);
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    static void call(long number, __user_cap_data_struct* data) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        if (::syscall(number, &header, data) != 0) throw std::system_error(errno, std::generic_category(), "cap");
    }

    __user_cap_data_struct saved_[2];
};

} // namespace vesk::test
