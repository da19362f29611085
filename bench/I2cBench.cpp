// A register read through the program's register operations and the shipped I2C library, compared
// with the same two requests given directly to the kernel's device file. Both use the same virtual
// bus. Fails if the former is too slow.

#include "RegisterReads.h"
#include "adapter/i2c/BusControl.h"
#include "link/USBFunctions.h"
#include "support/TemporaryFile.h"
#include "support/VirtualI2c.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>

namespace {

using namespace ztm;

constexpr unsigned long address = 0x2C;

} // namespace

int main() {
    // Created before the library's adapter, so that it outlives it.
    static test::VirtualI2c bus;
    bus.Plug([](size_t, const test::ByteTransfer &transfer) {
        return test::BusAnswer{.data = static_cast<uint8_t>(transfer.registerAddress + 1)};
    });
    const test::TemporaryFolder folder;
    const i2c::BusChoice choice{test::VirtualI2c::number, address};
    ChooseI2cBus(&choice);
    const int direct = open("/dev/i2c-7", O_RDWR | O_CLOEXEC);
    if (direct < 0 || LoadFirmWare(folder.Put("firmware.hex", ":00000001FF\n").c_str()) != 0) {
        std::fprintf(stderr, "the virtual bus cannot be opened\n");
        return EXIT_FAILURE;
    }
    const auto readDirectly = [direct] {
        i2c_smbus_data data{};
        i2c_smbus_ioctl_data call{I2C_SMBUS_READ, bench::comparedRegister, I2C_SMBUS_BYTE_DATA,
                                  &data};
        ioctl(direct, I2C_SLAVE, address);
        ioctl(direct, I2C_SMBUS, &call);
        return int{data.byte};
    };
    const int exitCode =
        bench::CompareReads("register read over I2C, on a virtual bus",
                            "two requests handed to the kernel, median", readDirectly);
    close(direct);
    const i2c::BusChoice nothing;
    ChooseI2cBus(&nothing);
    return exitCode;
}
