#include "link/Traffic.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/Ring.h"
#include "link/LastSeen.h"
#include "link/USBComms.h"

#include <bit>

namespace ztm {
namespace {

constexpr SeenValue notSeen{NotSeen, 0};

std::array<SeenValue, LastRegister + 1> NothingSeen() {
    std::array<SeenValue, LastRegister + 1> none;
    none.fill(notSeen);
    return none;
}

auto lastSeen = NothingSeen();
Ring<Transfer> transfers{std::bit_ceil(TransfersKept)};
uint64_t transferCount = 0;
const char *requester = "";

/// Returns what was seen before.
int16_t See(uint8_t address, int16_t value, double time) {
    SeenValue &seen = lastSeen[address];
    const int16_t before = seen.Value;
    seen = {value, time};
    return before;
}

} // namespace

uint64_t TransferCount() {
    return transferCount;
}

uint64_t FirstTransfer() {
    return transferCount > TransfersKept ? transferCount - TransfersKept : 0;
}

const Transfer &TransferAt(uint64_t number) {
    return transfers[number];
}

void RecordTransfer(TransferKind kind, uint8_t address, std::array<uint8_t, 2> data, bool isDone) {
    const double now = RunningSeconds();
    const bool isRegister =
        kind == TransferKind::ReadRegister || kind == TransferKind::WriteRegister;
    const int16_t before = isRegister && isDone ? See(address, data[0], now) : NotSeen;
    transfers.Put(transferCount) = {now, requester, data, before, address, kind, isDone};
    ++transferCount;
}

void ResetTraffic() {
    transfers.Clear();
    transferCount = 0;
    ResetLastSeen();
}

std::optional<SeenValue> LastSeen(int32_t address) {
    if (address < 0 || address > LastRegister || At(lastSeen, address).Value == NotSeen) {
        return std::nullopt;
    }
    return At(lastSeen, address);
}

void ResetLastSeen() {
    lastSeen.fill(notSeen);
}

Requester::Requester(const char *name) : before(requester) {
    requester = name;
}

Requester::~Requester() {
    requester = before;
}

} // namespace ztm
