#pragma once

#include "flashing/ISdkRadarFlasher.h"
#include "flashing/RadarBaseboardIdentity.h"
#include "flashing/RadarFlasherTiming.h"
#include "host/IFlasher.h"

#include <QPointer>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

class IRadarFirmwareSource;
class QThread;
class RadarFlasherWorker;

// The flasher of the baseboard on one serial port, as the host lists it.
// Each job runs on a thread of its own; status, progress and message change
// on the flasher's thread only, and each is announced only when it changes.
class RadarFlasher : public IFlasher
{
    Q_OBJECT
public:
    // Makes the library instance of each job; the library is used only from
    // the job's thread.
    using LibraryFactory = std::function<std::unique_ptr<ISdkRadarFlasher>()>;

    RadarFlasher(QString port, QString productId, RadarBaseboardIdentity identity,
                 const IRadarFirmwareSource* firmwareSource, LibraryFactory libraryFactory,
                 RadarFlasherTiming timing = {}, QObject* parent = nullptr);
    ~RadarFlasher() override;

    std::string name() const override { return m_name; }
    int progress() const override { return m_progress; }
    FlasherStatus::Status status() const override { return m_status; }
    QString message() const override { return m_message; }
    QString firmwareDir() const override { return m_firmwareDir; }
    QString filenamePattern() const override { return m_filenamePattern; }
    // Ignored while a job runs (STARTED, BOOTLOADER, FLASHING).
    void flash(const QString& imagePath) override;

    const QString& port() const { return m_port; }
    const QString& productId() const { return m_productId; }
    // For the next job: the board was seen again with another identity.
    void setProductId(const QString& productId) { m_productId = productId; }
    void setIdentity(const RadarBaseboardIdentity& identity) { m_identity = identity; }
    bool isBusy() const { return isRunning(m_status); }
    static bool isRunning(FlasherStatus::Status status);

public slots:
    void clear() override;
    void setProgress(int value);
    void setStatus(FlasherStatus::Status value);
    void setMessage(QString value);
    void onTimerTimeout();
    void onFinished();

private:
    void detachJob();

    std::string m_name;
    QString m_port;
    QString m_productId;
    RadarBaseboardIdentity m_identity;
    // Copied: the host may hold the flasher beyond the module's firmware source.
    QString m_firmwareDir;
    QString m_filenamePattern;
    LibraryFactory m_libraryFactory;
    RadarFlasherTiming m_timing;
    int m_progress = 0;
    FlasherStatus::Status m_status = FlasherStatus::NOT_STARTED;
    QString m_message;
    QTimer m_timer;
    // The running job; both delete themselves when the job's thread ends,
    // which for a job stuck in the library may be after the flasher is gone.
    QPointer<QThread> m_thread;
    QPointer<RadarFlasherWorker> m_worker;
};
