#pragma once

#include <QObject>

#include <memory>

class JSONConfigurationObject;

// Settings of the presence-sensing application ("presence_sensing"). The
// SDK's defaults for the chip fill it when the application is chosen.
class PresenceSensingConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float minDetectionRange READ minDetectionRange WRITE setMinDetectionRange NOTIFY minDetectionRangeChanged)
    Q_PROPERTY(float maxDetectionRange READ maxDetectionRange WRITE setMaxDetectionRange NOTIFY maxDetectionRangeChanged)
    Q_PROPERTY(float rangeHysteresisPercentage READ rangeHysteresisPercentage WRITE setRangeHysteresisPercentage NOTIFY rangeHysteresisPercentageChanged)
    Q_PROPERTY(quint32 absenceConfirmCount READ absenceConfirmCount WRITE setAbsenceConfirmCount NOTIFY absenceConfirmCountChanged)
    Q_PROPERTY(quint32 presenceConfirmCount READ presenceConfirmCount WRITE setPresenceConfirmCount NOTIFY presenceConfirmCountChanged)
public:
    explicit PresenceSensingConfig(QObject* parent = nullptr);

    float minDetectionRange() const { return m_minDetectionRange; }
    void setMinDetectionRange(float value);
    float maxDetectionRange() const { return m_maxDetectionRange; }
    void setMaxDetectionRange(float value);
    float rangeHysteresisPercentage() const { return m_rangeHysteresisPercentage; }
    void setRangeHysteresisPercentage(float value);
    quint32 absenceConfirmCount() const { return m_absenceConfirmCount; }
    void setAbsenceConfirmCount(quint32 value);
    quint32 presenceConfirmCount() const { return m_presenceConfirmCount; }
    void setPresenceConfirmCount(quint32 value);

    // The rule of the setting whose QML property is `property`, the same the
    // "presence_sensing" validators apply: empty when `value` meets it. The
    // counts and the hysteresis have none.
    static QString checkValue(const QString& property, double value);

    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void minDetectionRangeChanged();
    void maxDetectionRangeChanged();
    void rangeHysteresisPercentageChanged();
    void absenceConfirmCountChanged();
    void presenceConfirmCountChanged();
    void guiParamChanged();

private:
    float m_minDetectionRange = 0.0f;
    float m_maxDetectionRange = 0.0f;
    float m_rangeHysteresisPercentage = 0.0f;
    quint32 m_absenceConfirmCount = 0;
    quint32 m_presenceConfirmCount = 0;
};
