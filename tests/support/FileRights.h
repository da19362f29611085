#pragma once

#include <array>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ztm::test {

/// While it lives the access rights of files hold for this thread even when it is root's.
class FileRightsHold {
public:
    FileRightsHold() {
        syscall(SYS_capget, &header, before.data());
        auto without = before;
        without[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &header, without.data());
    }
    ~FileRightsHold() { syscall(SYS_capset, &header, before.data()); }
    FileRightsHold(const FileRightsHold &) = delete;
    FileRightsHold &operator=(const FileRightsHold &) = delete;

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> before{};
};

} // namespace ztm::test
