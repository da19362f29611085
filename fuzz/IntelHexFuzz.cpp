#include "Fuzz.h"

#include "adapter/firmware/IntelHex.h"
#include "support/HexRecords.h"

#include <algorithm>
#include <sstream>

namespace ztm::fuzz {
namespace {

constexpr uint32_t bytesPerRecord = 16;
constexpr uint32_t bytesPerBase = 0x10000;

std::string HexFile(const std::vector<HexBlock> &blocks) {
    std::string file;
    for (const HexBlock &block : blocks) {
        for (auto from = block.data.begin(); from != block.data.end();) {
            const auto address = block.address + static_cast<uint32_t>(from - block.data.begin());
            const auto offset = static_cast<uint16_t>(address % bytesPerBase);
            const auto to =
                from + std::min<std::ptrdiff_t>(block.data.end() - from,
                                                std::min(bytesPerRecord, bytesPerBase - offset));
            file += test::Record(
                4, 0, {static_cast<uint8_t>(address >> 24U), static_cast<uint8_t>(address >> 16U)});
            file += test::Record(0, offset, {from, to});
            from = to;
        }
    }
    return file + test::endOfFile;
}

} // namespace

void Try(std::string_view text) {
    std::istringstream file{std::string(text)};
    std::string whyNot;
    const auto blocks = ReadIntelHex(file, &whyNot);
    Require(blocks.has_value() == whyNot.empty(), "a refused file has a reason");
    if (!blocks) {
        return;
    }
    uint64_t end = 0;
    for (const HexBlock &block : *blocks) {
        Require(!block.data.empty(), "no empty block");
        Require(&block == blocks->data() || block.address > end, "in order, joined, no overlap");
        end = uint64_t{block.address} + block.data.size();
        Require(end <= uint64_t{1} << 32U, "within 32 bits");
    }
    std::istringstream again{HexFile(*blocks)};
    Require(ReadIntelHex(again) == blocks, "the same data written anew are read the same");
}

} // namespace ztm::fuzz
