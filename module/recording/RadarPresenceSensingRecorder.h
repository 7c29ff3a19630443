#pragma once

#include "sdk/vrn.h"

#include <QByteArray>
#include <QFile>
#include <QMutex>
#include <QObject>
#include <QString>

// Writes one text line per presence-sensing result beside a recording, so
// the algorithm's verdicts can be lined up with the raw frames offline.
//
// Format (LF line ends, tab-separated, decimal point whatever the locale):
//   # presence sensing results; state 0 = presence, 1 = absence
//   frame_number<TAB>state<TAB>target_range_m<TAB>motion_energy<TAB>frame_count
//   17<TAB>0<TAB>1.250000<TAB>0.031250<TAB>18
// frame_number is the pipeline's number of the frame (the number stored in
// the raw recording), frame_count the algorithm's own count of frames.
//
// record() runs on the acquisition thread, start() and stop() on the
// owner's; one mutex guards the file. A failing stream is reported once.
class RadarPresenceSensingRecorder : public QObject
{
    Q_OBJECT
public:
    explicit RadarPresenceSensingRecorder(QString filePath, QObject* parent = nullptr);
    ~RadarPresenceSensingRecorder() override;

    // base + ".presence.txt": the file beside base + ".raw.bin".
    static QString filePathFor(const QString& basePath);

    bool start();
    void record(int frameNumber, const vrn_PresenceSensing_Result_t& result);
    void stop();
    bool isActive() const;

signals:
    void errorDetected(QString message, QString details);

private:
    void reportCorruptedStream();

    const QString m_filePath;
    mutable QMutex m_mutex; // guards everything below
    QFile m_file;
    QByteArray m_line;
    bool m_failed = false;
};
