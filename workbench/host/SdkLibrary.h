#pragma once

#include <QLibrary>
#include <QString>

struct Vrn;
struct VrnSimControl;

// Loads a radar SDK implementation: any library exporting vrn_entry_points.
// The simulator also exports a control table for benches and hot-plug; a
// real SDK does not, and then control() is null.
class SdkLibrary
{
public:
    // Empty text on success, otherwise why the library cannot be used.
    QString load(const QString& path);
    void unload();
    // Replaces the simulator's boards with those of a bench file.
    QString loadBench(const QString& path);

    const Vrn* sdk() const { return m_sdk; }
    const VrnSimControl* control() const { return m_control; }
    QString path() const { return m_library.fileName(); }

    static QString defaultPath(const QString& applicationDirectory);

private:
    QLibrary m_library;
    const Vrn* m_sdk = nullptr;
    const VrnSimControl* m_control = nullptr;
};
