#pragma once

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;

// Chirp and frame parameters of the device as the SDK derived them from the
// scene ("radar_device_parameters" of the extended document).
class RadarDeviceParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 numSamplesPerChirp READ numSamplesPerChirp WRITE setNumSamplesPerChirp NOTIFY numSamplesPerChirpChanged)
    Q_PROPERTY(quint32 numChirpsPerFrame READ numChirpsPerFrame WRITE setNumChirpsPerFrame NOTIFY numChirpsPerFrameChanged)
    Q_PROPERTY(float frameRepetitionTimeS READ frameRepetitionTimeS WRITE setFrameRepetitionTimeS NOTIFY frameRepetitionTimeSChanged)
    Q_PROPERTY(quint64 lowerFrequencyHz READ lowerFrequencyHz WRITE setLowerFrequencyHz NOTIFY lowerFrequencyHzChanged)
    Q_PROPERTY(quint64 upperFrequencyHz READ upperFrequencyHz WRITE setUpperFrequencyHz NOTIFY upperFrequencyHzChanged)
    Q_PROPERTY(float chirpRepetitionTimeS READ chirpRepetitionTimeS WRITE setChirpRepetitionTimeS NOTIFY chirpRepetitionTimeSChanged)
    Q_PROPERTY(float pulseRepetitionTimeS READ pulseRepetitionTimeS WRITE setPulseRepetitionTimeS NOTIFY pulseRepetitionTimeSChanged)
    Q_PROPERTY(QString mimoMode READ mimoMode WRITE setMimoMode NOTIFY mimoModeChanged)
    Q_PROPERTY(float chirpTime READ chirpTime WRITE setChirpTime NOTIFY chirpTimeChanged)
public:
    explicit RadarDeviceParameters(QObject* parent = nullptr);

    quint32 numSamplesPerChirp() const { return m_numSamplesPerChirp; }
    void setNumSamplesPerChirp(quint32 value);
    quint32 numChirpsPerFrame() const { return m_numChirpsPerFrame; }
    void setNumChirpsPerFrame(quint32 value);
    float frameRepetitionTimeS() const { return m_frameRepetitionTimeS; }
    void setFrameRepetitionTimeS(float value);
    quint64 lowerFrequencyHz() const { return m_lowerFrequencyHz; }
    void setLowerFrequencyHz(quint64 value);
    quint64 upperFrequencyHz() const { return m_upperFrequencyHz; }
    void setUpperFrequencyHz(quint64 value);
    float chirpRepetitionTimeS() const { return m_chirpRepetitionTimeS; }
    void setChirpRepetitionTimeS(float value);
    float pulseRepetitionTimeS() const { return m_pulseRepetitionTimeS; }
    void setPulseRepetitionTimeS(float value);
    // "off" or "tdm".
    QString mimoMode() const { return m_mimoMode; }
    void setMimoMode(const QString& value);
    float chirpTime() const { return m_chirpTime; }
    void setChirpTime(float value);

    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void numSamplesPerChirpChanged();
    void numChirpsPerFrameChanged();
    void frameRepetitionTimeSChanged();
    void lowerFrequencyHzChanged();
    void upperFrequencyHzChanged();
    void chirpRepetitionTimeSChanged();
    void pulseRepetitionTimeSChanged();
    void mimoModeChanged();
    void chirpTimeChanged();
    void guiParamChanged();

private:
    quint32 m_numSamplesPerChirp = 0;
    quint32 m_numChirpsPerFrame = 0;
    float m_frameRepetitionTimeS = 0.0f;
    quint64 m_lowerFrequencyHz = 0;
    quint64 m_upperFrequencyHz = 0;
    float m_chirpRepetitionTimeS = 0.0f;
    float m_pulseRepetitionTimeS = 0.0f;
    QString m_mimoMode = QStringLiteral("off");
    float m_chirpTime = 0.0f;
};
