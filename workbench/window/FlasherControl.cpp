#include "FlasherControl.h"

#include "BoardList.h"
#include "FirmwareImages.h"
#include "FlashJob.h"
#include "FlasherList.h"
#include "HostServices.h"
#include "MessageLog.h"

#include "host/IFlasher.h"

#include <QDebug>
#include <QFileInfo>

namespace {
const QString kSource = QStringLiteral("Flashers");
}

FlasherControl::FlasherControl(HostFlasherRegister& flashers, BoardList& boards, MessageLog& messages,
                               QObject* parent)
    : QObject(parent)
    , m_register(flashers)
    , m_boards(boards)
    , m_messages(messages)
    , m_list(std::make_unique<FlasherList>(flashers))
{
    connect(m_list.get(), &FlasherList::jobEnded, this, &FlasherControl::onJobEnded);
}

FlasherControl::~FlasherControl() = default;

QObject* FlasherControl::list() const
{
    return m_list.get();
}

bool FlasherControl::flash(const QString& name, const QString& image)
{
    const std::shared_ptr<IFlasher> flasher = m_register.flasher(name);
    if (!flasher) {
        m_messages.add(Constants::Warning, QStringLiteral("%1 is no longer listed").arg(name),
                       QStringLiteral("Its board has gone; plug it in again to flash it."), kSource);
        return false;
    }
    if (FlasherList::outcome(flasher->status()) == QLatin1String("running")) {
        qInfo().noquote() << name << "is flashing already; the request is ignored";
        return false;
    }
    const QString path = image.trimmed().isEmpty() ? FirmwareImages::newest(*flasher) : FirmwareImages::userPath(image);
    if (path.isEmpty()) {
        m_messages.add(Constants::Warning, QStringLiteral("No firmware image to write to %1").arg(name),
                       QStringLiteral("%1 holds no image matching %2; choose one with \"Choose image…\".")
                           .arg(FirmwareImages::localFolder(flasher->firmwareDir()), flasher->filenamePattern()),
                       kSource);
        return false;
    }
    if (!QFileInfo(path).isReadable()) {
        m_messages.add(Constants::Warning, QStringLiteral("The firmware image cannot be read"),
                       QStringLiteral("%1 does not exist or is not readable; %2 was not flashed.").arg(path, name),
                       kSource);
        return false;
    }
    // The flashed board leaves the SDK's device list while its bootloader
    // runs; the window lets go of it first rather than lose it mid-frame.
    // A flasher is known by its serial port, a board by its name: which
    // board sits on the port cannot be told, so the open one is closed.
    const QString connected = m_boards.connectedBoard();
    if (!connected.isEmpty()) {
        m_boards.disconnectBoard();
        m_messages.add(Constants::Info, QStringLiteral("%1 was disconnected for flashing").arg(connected),
                       QStringLiteral("A board being flashed leaves the device list while its bootloader runs; "
                                      "connect it again once %1 has finished.")
                           .arg(name),
                       kSource);
    }
    qInfo().noquote() << "Flashing" << name << "with" << path;
    flasher->flash(path);
    return true;
}

void FlasherControl::onJobEnded(const QString& name, FlasherStatus::Status status, const QString& message)
{
    if (status == FlasherStatus::FINISHED_SUCCESS) {
        m_messages.add(Constants::Info, QStringLiteral("%1 was flashed").arg(name),
                       QStringLiteral("The board runs the new firmware; connect it to use it."), kSource);
        return;
    }
    m_messages.add(Constants::Error, QStringLiteral("Flashing %1 failed: %2").arg(name, FlashJob::statusName(status)),
                   message, kSource);
}
