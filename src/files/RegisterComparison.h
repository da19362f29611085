#pragma once

#include "regmap/RegMapStuff.h"
#include "regmap/RegisterValues.h"

#include <string>
#include <vector>

namespace ztm {

// Two states of the chip's registers side by side.

/// A register in both states.
struct ComparedRegister {
    const RegisterEntry *Register;
    std::optional<uint8_t> Left; ///< none if that state does not say
    std::optional<uint8_t> Right;

    /// Whether both states have a value, and not the same.
    bool Differs() const { return Left && Right && *Left != *Right; }
    /// The names of the bits that differ; empty if none does.
    std::string DifferingBits() const;
    /// Whether the right value could be written.
    bool CanBeWritten() const { return Right && !Register->IsReadOnly(); }
};

/// All registers of the current chip in the order of the map, or only those that differ.
std::vector<ComparedRegister> CompareRegisters(const RegisterValues &left,
                                               const RegisterValues &right, bool onlyDifferences);

/// A line each, with tabs between: address, name, both values and the differing bits. A value that
/// a state does not have is "–".
std::string ComparisonAsText(const std::vector<ComparedRegister> &rows);

/// A state that is kept for comparisons.
struct KeptState {
    std::string Name;
    std::string Note; ///< what is to be known about it; may be empty
    RegisterValues Values;
};

/// What was kept in this session, the oldest first.
std::vector<KeptState> &KeptStates();
void ResetKeptStates();

/// The order in which settings are best written: Configuration2 and then Configuration1 last,
/// without the bit that resets the chip; the others stay in their order. Configuration1 may start
/// the measurements and lock the limits.
std::vector<RegisterSetting> InWriteOrder(std::vector<RegisterSetting> settings);

/// Whether one of the settings locks the chip's limits until it is reset.
bool Locks(const std::vector<RegisterSetting> &settings);

} // namespace ztm
