#include "SdkLibrary.h"

#include "sdk/vrn.h"
#include "vrn_sim.h"

#include <QDir>

QString SdkLibrary::defaultPath(const QString& applicationDirectory)
{
    return QDir(applicationDirectory).filePath(QStringLiteral("libvrn_sim.so"));
}

QString SdkLibrary::load(const QString& path)
{
    m_library.setFileName(path);
    if (!m_library.load())
        return QStringLiteral("Cannot load the radar SDK %1: %2").arg(path, m_library.errorString());

    auto entryPoints = reinterpret_cast<vrn_entry_points_fn>(m_library.resolve(VRN_ENTRY_POINTS_SYMBOL));
    if (!entryPoints) {
        unload();
        return QStringLiteral("%1 is not a radar SDK: it does not export %2").arg(path, VRN_ENTRY_POINTS_SYMBOL);
    }
    const Vrn* sdk = entryPoints();
    if (!sdk || sdk->api_version != VRN_API_VERSION || sdk->struct_size < sizeof(Vrn)) {
        unload();
        return QStringLiteral("The radar SDK %1 speaks API version %2; this workbench needs %3")
            .arg(path)
            .arg(sdk ? sdk->api_version : 0)
            .arg(VRN_API_VERSION);
    }
    m_sdk = sdk;

    if (auto control = reinterpret_cast<vrnsim_control_fn>(m_library.resolve(VRNSIM_CONTROL_SYMBOL))) {
        const VrnSimControl* table = control();
        if (table && table->version == VRNSIM_CONTROL_VERSION && table->struct_size >= sizeof(VrnSimControl))
            m_control = table;
    }
    return {};
}

void SdkLibrary::unload()
{
    m_sdk = nullptr;
    m_control = nullptr;
    if (m_library.isLoaded())
        m_library.unload();
}

QString SdkLibrary::loadBench(const QString& path)
{
    if (!m_control)
        return QStringLiteral("The radar SDK %1 has no simulated bench to load %2 into").arg(this->path(), path);
    const QByteArray file = path.toLocal8Bit();
    const char* error = m_control->load_bench_file(file.constData());
    return error ? QString::fromUtf8(error) : QString();
}
