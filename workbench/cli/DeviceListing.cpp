#include "DeviceListing.h"

#include "ExitCodes.h"
#include "ModuleHost.h"

#include "sdk/vrn.h"

#include <QEventLoop>
#include <QSet>
#include <QTimer>

namespace {

// The SDK's own view of the attached boards, to know when the module has
// announced all of them.
QString sdkBoards(const Vrn& sdk, QSet<QString>& uuids)
{
    vrn_Device_List_Handle list = nullptr;
    if (vrn_Error_t error = sdk.device_list_get(&list))
        return QString::fromUtf8(error);
    uint32_t count = 0;
    QString failure;
    if (vrn_Error_t error = sdk.device_list_size(list, &count))
        failure = QString::fromUtf8(error);
    for (uint32_t i = 0; failure.isEmpty() && i < count; ++i) {
        vrn_Device_List_Entry_t entry {};
        if (vrn_Error_t error = sdk.device_list_entry(list, i, &entry))
            failure = QString::fromUtf8(error);
        else
            uuids.insert(QString::fromUtf8(entry.uuid, int(qstrnlen(entry.uuid, VRN_UUID_MAX))));
    }
    sdk.device_list_destroy(list);
    return failure;
}

// The chip name, read by opening the board for a moment.
QString chipOf(const Vrn& sdk, const QString& uuid, int shieldType)
{
    const QByteArray id = uuid.toUtf8();
    vrn_Device_Info_t info {};
    if (shieldType == VRN_SHIELD_ZP7_768) {
        vrn_Corvix_Handle device = nullptr;
        if (sdk.corvix_create_by_uuid(id.constData(), &device) != VRN_STATUS_OK || !device)
            return QStringLiteral("unknown");
        const bool ok = sdk.corvix_get_device_info(device, &info) == nullptr;
        sdk.corvix_destroy(device);
        return ok ? QString::fromUtf8(info.name) : QStringLiteral("unknown");
    }
    vrn_Device_Handle device = nullptr;
    if (sdk.device_create_by_uuid(id.constData(), &device) != VRN_STATUS_OK || !device)
        return QStringLiteral("unknown");
    const bool ok = sdk.device_get_info(device, &info) == nullptr;
    sdk.device_destroy(device);
    return ok ? QString::fromUtf8(info.name) : QStringLiteral("unknown");
}

} // namespace

QString awaitBoards(ModuleHost& host, int timeoutMs)
{
    const Vrn* sdk = host.sdkLibrary().sdk();
    if (!sdk)
        return QStringLiteral("No radar SDK is loaded: no boards can be listed.");
    QSet<QString> expected;
    const QString failure = sdkBoards(*sdk, expected);
    if (!failure.isEmpty())
        return QStringLiteral("The radar SDK cannot list its boards: ") + failure;

    auto announced = [&host] {
        QSet<QString> uuids;
        for (const auto& device : host.deviceRegister().devices())
            uuids.insert(device->property("uuid").toString());
        return uuids;
    };

    QEventLoop loop;
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&host.deviceRegister(), &HostDeviceRegister::devicesChanged, &loop, [&] {
        if (announced().contains(expected))
            loop.quit();
    });
    host.deviceChangeNotifier().notifyLater();
    if (!announced().contains(expected)) {
        timeout.start(timeoutMs);
        loop.exec();
    }
    if (!announced().contains(expected))
        return QStringLiteral("The module did not announce every board within %1 s.").arg(timeoutMs / 1000);
    return {};
}

int listDevices(ModuleHost& host, QTextStream& out, QTextStream& err)
{
    const QString error = awaitBoards(host);
    if (!error.isEmpty()) {
        err << error << Qt::endl;
        return ExitCode::StartError;
    }
    const Vrn* sdk = host.sdkLibrary().sdk();
    const auto devices = host.deviceRegister().devices();
    // Standard output holds only board lines, for scripts to read.
    if (devices.isEmpty())
        err << "No radar board was found." << Qt::endl;
    for (const auto& device : devices) {
        const QString uuid = device->property("uuid").toString();
        const int shield = device->property("shieldType").toInt();
        out << device->name() << '\t' << uuid << '\t' << shield << '\t' << chipOf(*sdk, uuid, shield) << Qt::endl;
    }
    return ExitCode::Success;
}

std::shared_ptr<IDevice> findBoard(ModuleHost& host, const QString& nameOrUuid)
{
    if (auto device = host.deviceRegister().device(nameOrUuid))
        return device;
    for (const auto& device : host.deviceRegister().devices()) {
        if (device->property("uuid").toString() == nameOrUuid)
            return device;
    }
    return nullptr;
}

QString boardNames(ModuleHost& host)
{
    QStringList names;
    for (const auto& device : host.deviceRegister().devices())
        names << QStringLiteral("\"%1\" (%2)").arg(device->name(), device->property("uuid").toString());
    return names.isEmpty() ? QStringLiteral("none") : names.join(QStringLiteral(", "));
}

std::shared_ptr<IDevice> chooseBoard(ModuleHost& host, const QString& nameOrUuid, QString& error)
{
    error = awaitBoards(host);
    if (!error.isEmpty())
        return nullptr;
    const auto devices = host.deviceRegister().devices();
    if (devices.isEmpty()) {
        error = QStringLiteral("no board is attached");
        return nullptr;
    }
    std::shared_ptr<IDevice> device = nameOrUuid.isEmpty() ? devices.first() : findBoard(host, nameOrUuid);
    if (!device)
        error = QStringLiteral("no board is named \"%1\" or has that uuid; the boards are: %2")
                    .arg(nameOrUuid, boardNames(host));
    return device;
}
