#include "SdkLibrary.h"

#include "sdk/vrn.h"

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

    using ControlFn = const VrnSimControl* (*)();
    if (auto control = reinterpret_cast<ControlFn>(m_library.resolve("vrnsim_control")))
        m_control = control();
    return {};
}

void SdkLibrary::unload()
{
    m_sdk = nullptr;
    m_control = nullptr;
    if (m_library.isLoaded())
        m_library.unload();
}
