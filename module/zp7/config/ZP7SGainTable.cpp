#include "zp7/config/ZP7SGainTable.h"

namespace ZP7SGainTable {

namespace {

struct Step {
    quint16 value;
    int gainDb;
};

// 10 dB at the lowest factor, 6 dB more for each doubling.
constexpr Step kSteps[kStepCount] = { { 3, 10 },  { 6, 16 },  { 12, 22 },  { 24, 28 },
                                      { 48, 34 }, { 96, 40 }, { 192, 46 }, { 384, 52 } };

bool exists(int index)
{
    return index >= 0 && index < kStepCount;
}

}

quint16 valueAt(int index)
{
    return exists(index) ? kSteps[index].value : 0;
}

int gainDbAt(int index)
{
    return exists(index) ? kSteps[index].gainDb : 0;
}

int indexOf(quint16 value)
{
    for (int i = 0; i < kStepCount; ++i) {
        if (kSteps[i].value == value)
            return i;
    }
    return -1;
}

bool isStep(quint16 value)
{
    return indexOf(value) >= 0;
}

QString labelAt(int index)
{
    if (!exists(index))
        return QString();
    return QStringLiteral("%1 / %2dB").arg(kSteps[index].value).arg(kSteps[index].gainDb);
}

QStringList labels()
{
    QStringList all;
    for (int i = 0; i < kStepCount; ++i)
        all.append(labelAt(i));
    return all;
}

QVector<quint16> valuesWithin(quint16 min, quint16 max)
{
    QVector<quint16> values;
    for (const Step& step : kSteps) {
        if (step.value >= min && step.value <= max)
            values.append(step.value);
    }
    return values;
}

QStringList labelsWithin(quint16 min, quint16 max)
{
    QStringList within;
    for (quint16 value : valuesWithin(min, max))
        within.append(labelAt(indexOf(value)));
    return within;
}

}
