#pragma once

#include "flashing/ISdkRadarFlasher.h"
#include "flashing/RadarBaseboardIdentity.h"
#include "flashing/RadarFlasherTiming.h"
#include "host/FlasherStatus.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>

// Runs one flashing job for the board on one serial port: into the
// bootloader, write and verify the image, wait for the board to come back.
// Knows nothing of threads; its owner runs process() on a thread of the
// job's own and hears of it only through the signals.
class RadarFlasherWorker : public QObject
{
    Q_OBJECT
public:
    RadarFlasherWorker(QString port, QString productId, QString imagePath, RadarBaseboardIdentity identity,
                       RadarFlasherTiming timing, std::unique_ptr<ISdkRadarFlasher> library,
                       QObject* parent = nullptr);

    // Callable from any thread: the job leaves its waits at the next step and
    // ends without another report. A library call under way runs to its end.
    void requestStop() { m_stopRequested = true; }

    QString lastLibraryMessage() const { return m_lastLibraryMessage; }

signals:
    void updateMessage(QString value);
    void updateProgress(int value);
    void updateStatus(FlasherStatus::Status status);
    void done();

public slots:
    void process();

private:
    void run();
    bool imageIsReadable();
    bool waitInitially();
    bool listsPort(const std::string& vendorId, const std::string& productId);
    bool isBackInNormalMode();
    // Empty when the bootloader did not show up in time.
    std::vector<std::string> awaitBootloader();
    void fail(const QString& reason, FlasherStatus::Status status);
    bool stopped() const { return m_stopRequested; }

    std::string m_port;
    std::string m_productId;
    QString m_imagePath;
    RadarBaseboardIdentity m_identity;
    RadarFlasherTiming m_timing;
    ISdkRadarFlasher* m_library; // a child of the worker, so that it moves to the job's thread with it
    QString m_lastLibraryMessage;
    std::atomic<bool> m_stopRequested { false };
};
