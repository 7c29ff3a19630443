#pragma once

#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;

// The window applied to the samples before an FFT.
class WindowConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(quint32 size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(float attenuationDB READ attenuationDB WRITE setAttenuationDB NOTIFY attenuationDBChanged)
    Q_PROPERTY(float scale READ scale WRITE setScale NOTIFY scaleChanged)
public:
    explicit WindowConfig(QObject* parent = nullptr);

    // A name from ProcessingNameTables::windowTypeNames().
    const QString& type() const { return m_type; }
    void setType(const QString& type);
    // Number of samples the window spans.
    quint32 size() const { return m_size; }
    void setSize(quint32 size);
    // Side-lobe level in dB; only the Chebyshev window uses it.
    float attenuationDB() const { return m_attenuationDB; }
    void setAttenuationDB(float attenuationDB);
    float scale() const { return m_scale; }
    void setScale(float scale);

    // Node "window_config" bound to this object, which must outlive it.
    std::unique_ptr<JSONConfigurationObject> configurationNode();
    void copyTo(vrn_Window_Config_t& config) const;

signals:
    void typeChanged();
    void sizeChanged();
    void attenuationDBChanged();
    void scaleChanged();

private:
    QString m_type;
    quint32 m_size = 0;
    float m_attenuationDB = 0.0f;
    float m_scale = 1.0f;
};
