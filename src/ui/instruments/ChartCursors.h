#pragma once

#include <QObject>

#include <array>
#include <optional>

namespace ztm {

/// The two measuring cursors A and B of any number of charts of one history: times in its seconds.
class ChartCursors final : public QObject {
    Q_OBJECT

public:
    static constexpr int count = 2;

    /// `cursor` is 0 for A and 1 for B; empty if it is not set.
    std::optional<double> Time(int cursor) const;
    void Set(int cursor, double time);
    void Remove();
    void Unset(int cursor);

    /// The times in order if both are set.
    struct Span {
        double from;
        double to;
    };
    std::optional<Span> Between() const;

signals:
    void Changed();

private:
    std::array<std::optional<double>, count> times;
};

} // namespace ztm
