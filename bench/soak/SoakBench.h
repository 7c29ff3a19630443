#pragma once

#include <QString>

class ModuleHost;
class QObject;
struct VrnSimControl;
class IDevice;
#include <memory>

// The simulated bench as the soak uses it: one board at a time, plugged
// and unplugged through the simulator's control table, and found again in
// the host's device list.
class SoakBench
{
public:
    explicit SoakBench(ModuleHost& host);

    static QString boardJson(const QString& uuid, const QString& chip, const QString& pacing, quint32 seed,
                             int fifoFrames = 4);
    // Plugs the board and waits until the module has registered it.
    QString plug(const QString& uuid, const QString& json, std::shared_ptr<IDevice>& device);
    // Unplugs it (if still there) and waits until the module let it go.
    QString unplug(const QString& uuid);
    QObject* view(const char* name) const;
    const VrnSimControl& control() const { return *m_control; }
    ModuleHost& host() { return m_host; }

private:
    ModuleHost& m_host;
    const VrnSimControl* m_control;
};
