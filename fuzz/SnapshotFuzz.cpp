#include "Fuzz.h"

#include "files/SnapshotFile.h"
#include "link/Session.h"

#include <algorithm>

namespace ztm::fuzz {
namespace {

constexpr size_t mostWrites = 4096;
constexpr int32_t savedRegisters = 52;

/// No file makes the reader write more registers than it has lines, or any but the chip's.
void RecallAnything(std::string_view text) {
    test::StartSession();
    const MemoryFile file(text);
    RecallSnapshot(file.Path());
    const auto writes = test::Adapter().Writes();
    const size_t mark = text.find('x');
    if (mark == std::string_view::npos || text.back() != '\n') {
        Require(writes.empty(), "what is no snapshot writes nothing");
        return;
    }
    const auto lines =
        static_cast<size_t>(std::count(text.begin() + static_cast<long>(mark), text.end(), '\n'));
    Require(writes.size() <= std::min(lines, mostWrites), "at most one write a line");
}

/// What the chip holds comes back, whatever it holds.
void SaveAndRecall(std::string_view contents) {
    test::StartSession(!contents.empty() && contents.front() % 2 != 0 ? ZTM7710 : ZTM7720);
    auto &registers = test::Adapter().registers;
    std::copy_n(contents.begin(), std::min(contents.size(), registers.size()), registers.begin());
    const auto before = registers;
    const MemoryFile file;
    Require(SaveSnapshot(file.Path()), "a snapshot can be saved");
    for (int index = 0; index < savedRegisters; ++index) {
        const RegisterEntry &entry = RegisterMap[static_cast<size_t>(index)];
        registers[static_cast<size_t>(entry.Address)] = static_cast<uint8_t>(entry.Default);
    }
    Require(RecallSnapshot(file.Path()), "what was saved can be recalled");
    for (int index = 0; index < savedRegisters; ++index) {
        const auto address = static_cast<size_t>(RegisterMap[static_cast<size_t>(index)].Address);
        Require(registers[address] == before[address], "every register is as it was saved");
    }
}

} // namespace

void Try(std::string_view text) {
    RecallAnything(text);
    SaveAndRecall(text);
}

} // namespace ztm::fuzz
