#pragma once

#include "host/RecordingUserSettings.h"

#include <QColor>
#include <QObject>
#include <QVector>

// The host's own user settings that modules read: how often charts may be
// redrawn, the chart series and their colours, and the recording settings.
class CoreUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int minimumRefreshInterval READ minimumRefreshInterval WRITE setMinimumRefreshInterval NOTIFY minimumRefreshIntervalChanged)
    Q_PROPERTY(int chartSeriesCount READ chartSeriesCount WRITE setChartSeriesCount NOTIFY chartSeriesCountChanged)
public:
    explicit CoreUserSettings(QObject* parent = nullptr);

    // Milliseconds between two chart refreshes, at least.
    int minimumRefreshInterval() const { return m_minimumRefreshInterval; }
    void setMinimumRefreshInterval(int milliseconds);

    int chartSeriesCount() const { return m_chartSeriesCount; }
    void setChartSeriesCount(int count);
    // Colour of series i: the palette, cycled.
    QColor seriesColor(int index) const;
    const QVector<QColor>& palette() const { return m_palette; }

    RecordingUserSettings* recordingUserSettings() { return &m_recording; }

signals:
    void minimumRefreshIntervalChanged();
    void chartSeriesCountChanged();

private:
    int m_minimumRefreshInterval = 33;
    int m_chartSeriesCount = 0;
    QVector<QColor> m_palette;
    RecordingUserSettings m_recording;
};
