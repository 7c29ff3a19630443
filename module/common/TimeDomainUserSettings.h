#pragma once

#include <QObject>

#include <memory>

class JSONConfigurationObject;

// The y range of the time-domain chart. ADC samples arrive normalised, so
// the range defaults to 0..1.
class TimeDomainUserSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float axisYMin READ axisYMin WRITE setAxisYMin NOTIFY axisYMinChanged)
    Q_PROPERTY(float axisYMax READ axisYMax WRITE setAxisYMax NOTIFY axisYMaxChanged)
public:
    explicit TimeDomainUserSettings(QObject* parent = nullptr);

    float axisYMin() const { return m_axisYMin; }
    void setAxisYMin(float axisYMin);
    float axisYMax() const { return m_axisYMax; }
    void setAxisYMax(float axisYMax);

    // Node "time_domain" bound to this object, which must outlive it.
    std::unique_ptr<JSONConfigurationObject> configurationNode();

    Q_INVOKABLE void resetToDefault();

signals:
    void axisYMinChanged();
    void axisYMaxChanged();

private:
    float m_axisYMin = 0.0f;
    float m_axisYMax = 1.0f;
};
