#include "ChartTicks.h"

#include <QtMath>

#include <cmath>

namespace {

// More ticks than this never fit an axis; it also bounds the loop when a
// caller passes a huge target.
constexpr int kMaximumTicks = 100;

int decimalsFor(double step)
{
    if (!(step > 0.0))
        return 0;
    return qBound(0, int(-std::floor(std::log10(step) + 1e-9)), 12);
}

}

double ChartTicks::step(double min, double max, int target)
{
    const double span = max - min;
    if (!qIsFinite(min) || !qIsFinite(max) || !qIsFinite(span) || span <= 0.0)
        return 0.0;
    const double raw = span / double(qBound(1, target, kMaximumTicks));
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double normalised = raw / magnitude;
    double factor = 10.0;
    if (normalised < 1.5)
        factor = 1.0;
    else if (normalised < 3.0)
        factor = 2.0;
    else if (normalised < 7.0)
        factor = 5.0;
    return factor * magnitude;
}

QVector<ChartTicks::Tick> ChartTicks::compute(double min, double max, int target)
{
    QVector<Tick> ticks;
    const double tickStep = step(min, max, target);
    if (!(tickStep > 0.0) || !qIsFinite(tickStep))
        return ticks;
    // A tick that lands a rounding error outside the range still belongs to it.
    const double tolerance = tickStep * 1e-9;
    const double first = std::ceil((min - tolerance) / tickStep);
    for (int i = 0; i <= kMaximumTicks; ++i) {
        // Multiplying rather than adding keeps the error from accumulating.
        const double value = (first + i) * tickStep;
        if (value > max + tolerance)
            break;
        ticks.append(Tick { value, format(value, tickStep) });
    }
    return ticks;
}

QString ChartTicks::format(double value, double step, int extraDecimals)
{
    if (!qIsFinite(value))
        return QString::number(value);
    const double magnitude = qAbs(value);
    // Beyond a million the digits stop being readable as a label.
    if (magnitude >= 1e6 || (magnitude > 0.0 && magnitude < 1e-4 && step < 1e-4))
        return QString::number(value, 'g', 4);
    const int decimals = qBound(0, decimalsFor(step) + extraDecimals, 12);
    // Rounding to the shown decimals first avoids a label "-0.0".
    const double scale = std::pow(10.0, decimals);
    double shown = std::round(value * scale) / scale;
    if (shown == 0.0)
        shown = 0.0;
    return QString::number(shown, 'f', decimals);
}
