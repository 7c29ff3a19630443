#include "host/CoreUserSettings.h"

CoreUserSettings::CoreUserSettings(QObject* parent)
    : QObject(parent)
    // A palette that stays readable on light and dark chart backgrounds.
    , m_palette { QColor(0x1f, 0x77, 0xb4), QColor(0xff, 0x7f, 0x0e), QColor(0x2c, 0xa0, 0x2c),
                  QColor(0xd6, 0x27, 0x28), QColor(0x94, 0x67, 0xbd), QColor(0x8c, 0x56, 0x4b),
                  QColor(0xe3, 0x77, 0xc2), QColor(0x7f, 0x7f, 0x7f) }
{
}

void CoreUserSettings::setMinimumRefreshInterval(int milliseconds)
{
    if (milliseconds == m_minimumRefreshInterval)
        return;
    m_minimumRefreshInterval = milliseconds;
    emit minimumRefreshIntervalChanged();
}

void CoreUserSettings::setChartSeriesCount(int count)
{
    if (count == m_chartSeriesCount)
        return;
    m_chartSeriesCount = count;
    emit chartSeriesCountChanged();
}

QColor CoreUserSettings::seriesColor(int index) const
{
    if (m_palette.isEmpty() || index < 0)
        return QColor();
    return m_palette.at(index % m_palette.size());
}
