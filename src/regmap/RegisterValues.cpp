#include "regmap/RegisterValues.h"

#include "common/At.h"
#include "common/Clock.h"
#include "regmap/RegMapStuff.h"

namespace ztm {

RegisterValues DefaultValues() {
    RegisterValues values;
    for (const RegisterEntry &entry : Registers()) {
        At(values, entry.Address) = static_cast<uint8_t>(entry.Default);
    }
    return values;
}

RegisterValues ValuesOf(const std::vector<RegisterSetting> &settings) {
    RegisterValues values;
    for (const RegisterSetting &setting : settings) {
        At(values, setting.Address) = static_cast<uint8_t>(setting.Value);
    }
    return values;
}

bool MapReader::Step(double seconds) {
    const auto registers = Registers();
    const double start = RunningSeconds();
    while (done < registers.size()) {
        const RegisterEntry &entry = registers[done];
        ++done;
        if (entry.Access != RegisterAccess::ReadingClears) {
            At(values, entry.Address) = static_cast<uint8_t>(ReadRegister(entry.Address));
        }
        const bool isLowByte = done < registers.size() && registers[done].IsHighByte();
        if (!isLowByte && RunningSeconds() - start >= seconds) {
            break;
        }
    }
    return done < registers.size();
}

size_t MapReader::Total() {
    return Registers().size();
}

} // namespace ztm
