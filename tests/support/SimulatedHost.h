#pragma once

#include <QString>
#include <memory>

class CoreUserSettings;
class IDevice;
class ModuleHost;
class QObject;

// The radar module as a user meets it: loaded by the reference host over the
// simulated SDK, on a bench of boards the test writes. Tests that drive the
// whole plug-in start from here instead of repeating the host's start-up.
class SimulatedHost
{
public:
    SimulatedHost();
    ~SimulatedHost();

    // Writes `benchJson` into `directory`, starts the module with a settings
    // file there and waits until the boards are detected. Empty text when
    // all of that worked, otherwise what failed.
    QString start(const QString& benchJson, const QString& directory);
    // Connects the first detected board; empty text on success.
    QString connectFirstBoard();
    void stop();

    ModuleHost& host() { return *m_host; }
    CoreUserSettings& core();
    std::shared_ptr<IDevice> device() const { return m_device; }
    // The standard mode's view, as the pages see it ("radarView").
    QObject* view() const;

    // A bench of one paced or unpaced board; `scene` is the JSON of its
    // "scene" object, or empty for the simulator's default scene.
    static QString oneBoardBench(const QString& uuid, const QString& chip, const QString& pacing,
                                 const QString& scene = {});

private:
    std::unique_ptr<ModuleHost> m_host;
    std::shared_ptr<IDevice> m_device;
};
