#include "Fuzz.h"

#include "files/SnapshotFile.h"
#include "link/Session.h"
#include "link/USBComms.h"

#include <algorithm>

namespace ztm::fuzz {
namespace {

constexpr int32_t savedRegisters = 52;

/// No file lists more registers than it has lines, or any but the chip's.
void ReadAnything(std::string_view text) {
    const auto registers = ReadSnapshot(MemoryFile(text).Path()).Registers;
    for (const auto &[address, value] : registers) {
        Require(address >= 0 && address <= 0xFF && value >= 0 && value <= 0xFF, "bytes");
    }
    const size_t mark = text.find('x');
    if (mark == std::string_view::npos || text.back() != '\n') {
        Require(registers.empty(), "what is no snapshot has no registers");
        return;
    }
    const auto lines =
        static_cast<size_t>(std::count(text.begin() + static_cast<long>(mark), text.end(), '\n'));
    Require(registers.size() <= lines, "at most one register a line");
}

/// What the chip holds comes back, whatever it holds.
void SaveAndRecall(std::string_view contents) {
    test::StartSession(!contents.empty() && contents.front() % 2 != 0 ? ZTM7710 : ZTM7720);
    auto &registers = test::Adapter().registers;
    std::copy_n(contents.begin(), std::min(contents.size(), registers.size()), registers.begin());
    const auto before = registers;
    const MemoryFile file;
    Require(SaveSnapshot(file.Path()).Problem.empty(), "a snapshot can be saved");
    for (int index = 0; index < savedRegisters; ++index) {
        const RegisterEntry &entry = RegisterMap[static_cast<size_t>(index)];
        registers[static_cast<size_t>(entry.Address)] = static_cast<uint8_t>(entry.Default);
    }
    const Snapshot snapshot = ReadSnapshot(file.Path());
    Require(snapshot.Problem.empty(), "what was saved can be recalled");
    for (const auto &[address, value] : snapshot.Registers) {
        WriteRegister(address, value);
    }
    for (int index = 0; index < savedRegisters; ++index) {
        const auto address = static_cast<size_t>(RegisterMap[static_cast<size_t>(index)].Address);
        Require(registers[address] == before[address], "every register is as it was saved");
    }
}

} // namespace

void Try(std::string_view text) {
    ReadAnything(text);
    SaveAndRecall(text);
}

} // namespace ztm::fuzz
