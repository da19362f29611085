#pragma once

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "ui/kit/Text.h"

#include <QColor>
#include <QPointF>
#include <QStringList>

#include <optional>
#include <vector>

namespace ztm {

/// What a strip chart shows.
struct StripChartSetup {
    struct Trace {
        int channel = 0; ///< of the history
        QString name;
        QColor colour; ///< made lighter or darker to suit the background
        bool rightAxis = false;
        QString unit;
        int decimals = 1; ///< of read-outs
        int label = -1;   ///< the label entry whose text, if not empty, replaces the name

        /// A value as number text, as on the gauge.
        QString TextOf(double value) const {
            return ToQString(NumberText(RoundToDecimals(value, decimals)));
        }
    };
    struct ValueAxis {
        double minimum = 0;
        double maximum = 100;
    };
    struct Label {
        enum class Place { AtPosition, LeftAxisTitle, RightAxisTitle };

        QString text;
        Place place = Place::AtPosition;
        /// Top left corner in fractions of the chart's width and height. The label is kept within
        /// the plot.
        QPointF position;
        QColor colour; ///< invalid: the chart's text colour
    };

    std::vector<Trace> traces;
    ValueAxis left;
    std::optional<ValueAxis> right;
    std::vector<Label> labels;
    double visibleSeconds = 60;
    /// A recording: times are seconds since its start, not since a midnight, and nothing follows.
    bool recorded = false;
    QString title;       ///< of saved pictures
    QString emptyNotice; ///< shown while no trace has a value

    /// The units of the traces on an axis, as in "°C, %".
    QString UnitsOf(bool rightAxis) const {
        QStringList units;
        for (const Trace &trace : traces) {
            if ((trace.rightAxis && right.has_value()) == rightAxis) {
                units.append(trace.unit);
            }
        }
        units.removeDuplicates();
        return units.join(QStringLiteral(", "));
    }

    /// The name of a trace in read-outs and files.
    QString NameOf(const Trace &trace) const {
        const auto label = static_cast<size_t>(trace.label);
        const bool hasLabel =
            trace.label >= 0 && label < labels.size() && !labels[label].text.isEmpty();
        return hasLabel ? labels[label].text : trace.name;
    }
};

} // namespace ztm
