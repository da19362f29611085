#include "link/Traffic.h"

#include "common/At.h"
#include "link/CommFailure.h"
#include "link/LastSeen.h"
#include "link/LinkTest.h"
#include "link/Registers.h"
#include "link/USBComms.h"

namespace ztm::test {
namespace {

using Traffic = LinkTest;

/// The last transfers as text: who, what, and what was seen before.
std::string LastTransfers(uint64_t count) {
    std::string text;
    for (uint64_t number = TransferCount() - count; number < TransferCount(); ++number) {
        const Transfer &transfer = TransferAt(number);
        const char *kinds[] = {"read", "write", "set heaters", "read heaters", "handshake"};
        text += std::string(transfer.Requester) + ": " + At(kinds, transfer.Kind) + " " +
                std::to_string(transfer.Address) + " " + std::to_string(transfer.Data[0]) + " " +
                std::to_string(transfer.Data[1]) + " " + std::to_string(transfer.Before) +
                (transfer.IsDone ? "\n" : " failed\n");
    }
    return text;
}

TEST_F(Traffic, HasEachTransferWithItsRequesterAndWhatWasSeenBefore) {
    StartSession();
    Adapter().registers[0x0B] = 0x8B;
    const double start = clock.TotalSeconds();
    {
        const Requester outer("outer");
        ReadRegister(0x0B);
        {
            const Requester inner("inner");
            WriteRegister(0x0B, 0x90);
        }
        WriteRegister(Configuration1, 0x81);
    }
    SetHeaterDuty(40, HeaterUnchanged);
    ReadHeaterDuty();
    AdapterHandshake();
    clock.Advance(5);
    Adapter().script = [](const Call &) { return int16_t{-1}; };
    SetCommFailureHandler([] { throw std::runtime_error("failed"); });
    EXPECT_THROW(ReadRegister(0x0B), std::runtime_error);
    EXPECT_THROW(WriteRegister(0x0B, 1), std::runtime_error);
    EXPECT_EQ(LastTransfers(9), "outer: read 11 139 0 -1\n"
                                "inner: write 11 144 0 139\n"
                                "outer: write 1 129 0 -1\n"
                                "outer: read 1 129 0 129\n"
                                ": set heaters 0 40 255 -1\n"
                                ": read heaters 0 40 0 -1\n"
                                ": handshake 0 0 0 -1\n"
                                ": read 11 0 0 -1 failed\n"
                                ": write 11 1 0 -1 failed\n");
    EXPECT_EQ(TransferCount(), 9);

    // What failed was not seen.
    EXPECT_EQ(LastSeen(0x0B)->Value, 0x90);
    EXPECT_NEAR(LastSeen(0x0B)->Time, TransferAt(1).Time, 0);
    EXPECT_NEAR(TransferAt(8).Time - TransferAt(1).Time, clock.TotalSeconds() - start, 0.001);
    for (const int address : {0x0C, -1, 0x100}) {
        EXPECT_FALSE(LastSeen(address)) << address;
    }
    Adapter().script = {};
    WriteRegister(Configuration2, 0x85);
    EXPECT_FALSE(LastSeen(0x0B)) << "the chip was reset";
    EXPECT_TRUE(LastSeen(Configuration2));
    ResetTraffic();
    EXPECT_EQ(TransferCount(), 0);
    EXPECT_FALSE(LastSeen(Configuration2));
}

TEST_F(Traffic, KeepsTheNewest) {
    for (uint32_t transfer = 0; transfer < TransfersKept + 300; ++transfer) {
        RecordTransfer(TransferKind::ReadRegister, 1, {static_cast<uint8_t>(transfer % 251)}, true);
        if (transfer == TransfersKept - 1) {
            EXPECT_EQ(FirstTransfer(), 0);
        }
    }
    EXPECT_EQ(FirstTransfer(), 300);
    EXPECT_EQ(TransferAt(300).Data[0], 300 % 251);
    EXPECT_EQ(TransferAt(TransferCount() - 1).Data[0], (TransfersKept + 299) % 251);
}

} // namespace
} // namespace ztm::test
