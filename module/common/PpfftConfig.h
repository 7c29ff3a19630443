#pragma once

#include "common/WindowConfig.h"
#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;

// Settings of one FFT stage: transform type and length, mean removal and the
// window it applies.
class PpfftConfig : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(quint32 size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(bool meanRemoval READ meanRemoval WRITE setMeanRemoval NOTIFY meanRemovalEnabledChanged)
    Q_PROPERTY(bool normalizedWindow READ normalizedWindow WRITE setNormalizedWindow NOTIFY isNormalizedWindowChanged)
    Q_PROPERTY(WindowConfig* window READ window CONSTANT)
public:
    explicit PpfftConfig(QObject* parent = nullptr);

    // A name from ProcessingNameTables::fftTypeNames().
    const QString& type() const { return m_type; }
    void setType(const QString& type);
    quint32 size() const { return m_size; }
    void setSize(quint32 size);
    bool meanRemoval() const { return m_meanRemoval; }
    void setMeanRemoval(bool enabled);
    bool normalizedWindow() const { return m_normalizedWindow; }
    void setNormalizedWindow(bool normalized);
    WindowConfig* window() { return &m_window; }
    const WindowConfig* window() const { return &m_window; }

    // Node "fft_config" bound to this object, which must outlive it.
    std::unique_ptr<JSONConfigurationObject> configurationNode();
    void copyTo(vrn_PPFFT_Config_t& config) const;

signals:
    void typeChanged();
    void sizeChanged();
    void meanRemovalEnabledChanged();
    void isNormalizedWindowChanged();

private:
    QString m_type;
    quint32 m_size = 0;
    bool m_meanRemoval = true;
    bool m_normalizedWindow = true;
    WindowConfig m_window;
};
