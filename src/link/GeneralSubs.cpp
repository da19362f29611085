#include "link/GeneralSubs.h"

#include "common/Numbers.h"
#include "link/Registers.h"
#include "link/USBComms.h"

namespace ztm {
namespace {

constexpr double rpmTimesCount = 4915200.0;
constexpr int32_t stoppedCount = 0xFFFF;

} // namespace

int32_t RpmOfCount(int32_t count) {
    return count == 0 ? 0 : ToInt32(rpmTimesCount / count);
}

int32_t ReadRPM(int32_t msbAddress) {
    const int32_t low = ReadRegister(msbAddress - 1);
    return RpmOfCount(ReadRegister(msbAddress) * 256 + low);
}

void WriteRPM(int32_t msbAddress, int32_t rpm) {
    const int32_t count = rpm == 0 ? stoppedCount : ToInt32(rpmTimesCount / rpm);
    if (rpm < 0 || count > stoppedCount) {
        return;
    }
    WriteRegister(msbAddress, count / 256);
    WriteRegister(msbAddress - 1, count % 256);
}

bool IsConfig2Bit2Set() {
    return (ReadRegister(Configuration2) & LinearBit) != 0;
}

} // namespace ztm
