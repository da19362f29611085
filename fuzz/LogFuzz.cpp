#include "Fuzz.h"

#include "common/At.h"
#include "common/EightBitText.h"
#include "common/NumberText.h"
#include "files/LogFile.h"
#include "monitor/MeasurementLog.h"
#include "support/AdapterDouble.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ztm::fuzz {
namespace {

/// What a text gives does not depend on where it is cut into pieces.
void ReadAnything(std::string_view text) {
    ChannelHistory once;
    LogReader whole(once);
    const bool isLog = whole.Feed(text) && whole.Finish();
    Require(isLog == whole.Problem().empty(), "a reason exactly where there is no log");
    const auto lines = static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
    Require(whole.Contents().Rows <= lines, "at most one row a line");
    Require(once.SampleCount() == whole.Contents().Rows, "every row is a sample");

    ChannelHistory bitByBit;
    LogReader pieces(bitByBit);
    const size_t size = text.empty() ? 1 : static_cast<uint8_t>(text.back()) % 7 + 1;
    bool goesOn = true;
    for (size_t at = 0; at < text.size() && goesOn; at += size) {
        goesOn = pieces.Feed(text.substr(at, size));
    }
    Require((goesOn && pieces.Finish()) == isLog && pieces.Problem() == whole.Problem(),
            "pieces say the same");
    Require(bitByBit.SampleCount() == once.SampleCount(), "pieces give the same rows");
}

/// What the log writes is read.
void WriteAndRead(std::string_view bytes) {
    test::ResetCore();
    for (size_t channel = 0; channel < ChannelCount; ++channel) {
        LogSelected[channel] = !bytes.empty() && (bytes.front() >> channel & 1) != 0;
        float value = 0;
        if (bytes.size() >= (channel + 1) * sizeof value) {
            std::memcpy(&value, bytes.data() + channel * sizeof value, sizeof value);
        }
        Measurements[channel] = std::isfinite(value) ? value : 0;
    }
    std::string text = "Started At: now\r\n\t";
    for (size_t channel = 0; channel < ChannelCount; ++channel) {
        if (LogSelected[channel]) {
            text.append(Channels[channel].Name).append(channel < 5 ? "\t" : "");
        }
    }
    BuildLogLine(0);
    AppendWindows1252(text, "\r\n" + LogLine + "\r\n");
    ChannelHistory rows;
    LogReader reader(rows);
    Require(reader.Feed(text) && reader.Finish() && reader.Contents().Rows == 1, "a row is read");
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const float read = rows.LastValue(channel);
        Require(At(LogSelected, channel) ? NumberText(read) == NumberText(At(Measurements, channel))
                                         : std::isnan(read),
                "values are read as they were written");
    }
}

} // namespace

void Try(std::string_view text) {
    ReadAnything(text);
    WriteAndRead(text);
}

} // namespace ztm::fuzz
