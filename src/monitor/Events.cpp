#include "monitor/Events.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/Heaters.h"
#include "link/LinkObserver.h"
#include "link/Registers.h"

#include <algorithm>
#include <optional>

namespace ztm {
namespace {

EventHistory events;
std::array<bool, ChannelCount> lastAlarms{};

struct Limit {
    int32_t address;
    int channel;
    const char *name;
};

/// The limits that do not stand beside their channels.
constexpr std::array<Limit, 3> thermLimits{{
    {LocalThermLimit, 0, "THERM limit"},
    {Remote1ThermLimit, 1, "THERM limit"},
    {Remote2ThermLimit, 2, "THERM limit"},
}};

std::optional<Limit> LimitAt(int32_t address) {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const Channel &known = At(Channels, channel);
        if (address == known.LowLimit || address == known.HighLimit) {
            return Limit{address, channel, address == known.LowLimit ? "Low limit" : "High limit"};
        }
    }
    const auto *const found =
        std::find_if(thermLimits.begin(), thermLimits.end(),
                     [address](const Limit &limit) { return limit.address == address; });
    return found == thermLimits.end() ? std::nullopt : std::optional(*found);
}

std::string LimitText(int channel, int32_t byte) {
    return At(Channels, channel).Measures == Quantity::ThermPercent
               ? NumberText(RoundToDecimals(PercentOfByte(byte), 2)) + "%"
               : std::to_string(CelsiusOfByte(byte)) + "°C";
}

class Follower final : public LinkObserver {
public:
    void RegisterWritten(int32_t address, int32_t data) override {
        const auto limit = LimitAt(address);
        if (limit && HasChannel(limit->channel)) {
            AddEvent(std::string(limit->name) + " " + LimitText(limit->channel, data),
                     limit->channel);
        }
    }

    void ControlTypeRead(bool isAutomatic) override {
        if (automatic && *automatic != isAutomatic) {
            AddEvent(isAutomatic ? "Automatic control" : "Manual control");
        }
        automatic = isAutomatic;
    }

    /// The steps of a ramp are no events.
    void HeaterDutiesSet(const std::array<int32_t, 2> &duties) override {
        for (size_t heater = 0; heater < duties.size(); ++heater) {
            if (duties[heater] != HeaterUnchanged && !Heaters[heater].SoftwareControl) {
                AddEvent("Heater " + std::to_string(heater + 1) + ": " +
                         std::to_string(duties[heater]) + "%");
            }
        }
    }

    void Forget() { automatic.reset(); }

private:
    std::optional<bool> automatic;
};

Follower follower;

} // namespace

const EventHistory &Events() {
    return events;
}

void AddEvent(std::string text, int channel, double time) {
    events.Add(time, channel, std::move(text));
}

void NoteAlarms(const std::array<bool, ChannelCount> &alarms) {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const bool now = At(alarms, channel);
        if (now != At(lastAlarms, channel) && HasChannel(channel)) {
            At(lastAlarms, channel) = now;
            AddEvent(now ? "Alarm on" : "Alarm off", channel);
        }
    }
}

void ResetEvents() {
    events.Clear();
    lastAlarms = {};
    follower.Forget();
    SetLinkObserver(&follower);
}

} // namespace ztm
