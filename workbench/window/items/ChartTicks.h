#pragma once

#include <QString>
#include <QVector>

// Axis ticks at "nice" values (1, 2 or 5 times a power of ten), so that the
// labels read as round numbers whatever the range the data happens to span.
class ChartTicks
{
public:
    struct Tick {
        double value = 0.0;
        QString label;
    };

    // About `target` ticks inside [min, max], both ends included when they
    // fall on a tick; none for an empty or non-finite range.
    static QVector<Tick> compute(double min, double max, int target);
    // The distance between two ticks for that range and count; 0 when there
    // is none.
    static double step(double min, double max, int target);
    // `value` written with as many decimals as a tick step of `step` needs
    // (plus `extraDecimals`), never as "-0".
    static QString format(double value, double step, int extraDecimals = 0);
};
