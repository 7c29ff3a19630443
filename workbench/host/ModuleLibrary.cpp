#include "ModuleLibrary.h"

#include "host/IModule.h"

#include <QDir>

QString ModuleLibrary::defaultPath(const QString& applicationDirectory)
{
    return QDir(applicationDirectory).filePath(QStringLiteral("libradar.so"));
}

QString ModuleLibrary::load(const QString& path)
{
    m_library.setFileName(path);
    // Resolve every symbol now, so a broken module fails here and not later
    // in the middle of a session.
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!m_library.load())
        return QStringLiteral("Cannot load the module %1: %2").arg(path, m_library.errorString());

    auto coreVersion = reinterpret_cast<CoreVersionFn>(m_library.resolve(ModuleExports::coreVersionSymbol));
    m_create = reinterpret_cast<CreateModuleFn>(m_library.resolve(ModuleExports::createModuleSymbol));
    if (!coreVersion || !m_create) {
        m_create = nullptr;
        m_library.unload();
        return QStringLiteral("%1 is not a workbench module: it does not export CoreVersion and CreateModule").arg(path);
    }
    const QString version = QString::fromUtf8(coreVersion());
    if (version != QLatin1String(ModuleExports::coreVersion)) {
        m_create = nullptr;
        m_library.unload();
        return QStringLiteral("The module %1 was built for core version %2; this workbench provides %3")
            .arg(path, version, QLatin1String(ModuleExports::coreVersion));
    }
    return {};
}

IModule* ModuleLibrary::createModule() const
{
    return m_create ? m_create() : nullptr;
}
