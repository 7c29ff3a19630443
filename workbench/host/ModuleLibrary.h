#pragma once

#include <QLibrary>
#include <QString>

class IModule;

// Loads a module library and checks that it speaks the host's core version.
class ModuleLibrary
{
public:
    // Empty text on success, otherwise the reason the module is refused.
    QString load(const QString& path);
    // A new module object owned by the caller; null when creation failed.
    IModule* createModule() const;
    QString path() const { return m_library.fileName(); }

    static QString defaultPath(const QString& applicationDirectory);

private:
    QLibrary m_library;
    IModule* (*m_create)() = nullptr;
};
