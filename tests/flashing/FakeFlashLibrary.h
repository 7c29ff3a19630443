#pragma once

#include "flashing/ISdkRadarFlasher.h"
#include "flashing/RadarBaseboardIdentity.h"

#include <QMutex>
#include <QSemaphore>
#include <QStringList>

#include <map>
#include <memory>
#include <set>
#include <thread>

// Boards on serial ports as the fake flashing library sees them, with the
// faults a test schedules. Shared by every library instance of a test and
// read from the job threads, hence the mutex.
struct FakeBoards
{
    QMutex mutex;
    std::map<std::string, std::string> normal; // port -> product ID
    std::set<std::string> bootloader;
    std::string activationError;    // non-empty: activation fails with it
    bool bootloaderNeverShows = false;
    std::string flashError;         // non-empty: writing fails with it
    bool neverReturns = false;
    QSemaphore* flashGate = nullptr; // set: flash() waits for a release
    QStringList calls;
    int sleeps = 0;

    void attach(const std::string& port, const std::string& product = "0251")
    {
        QMutexLocker lock(&mutex);
        normal[port] = product;
    }
};

class FakeFlashLibrary : public ISdkRadarFlasher
{
public:
    explicit FakeFlashLibrary(FakeBoards& boards)
        : m_boards(boards)
    {
    }

    std::vector<std::string> findComPorts(const std::string& vendorId, const std::string& productId) override
    {
        QMutexLocker lock(&m_boards.mutex);
        std::vector<std::string> ports;
        if (vendorId == RadarBaseboardIdentity::kBootloaderVendorId) {
            ports.assign(m_boards.bootloader.begin(), m_boards.bootloader.end());
            return ports;
        }
        for (const auto& [port, product] : m_boards.normal) {
            if (vendorId == "2F5A" && product == productId)
                ports.push_back(port);
        }
        return ports;
    }

    bool activateBootloader(const std::string& productId, const std::string& port, std::string& error) override
    {
        QMutexLocker lock(&m_boards.mutex);
        m_boards.calls << QStringLiteral("activate %1 %2").arg(productId.c_str(), port.c_str());
        if (!m_boards.activationError.empty()) {
            error = m_boards.activationError;
            return false;
        }
        m_boards.normal.erase(port);
        if (!m_boards.bootloaderNeverShows)
            m_boards.bootloader.insert(port);
        return true;
    }

    bool flash(const std::string& port, const std::string& image, std::string& error) override
    {
        QSemaphore* gate = nullptr;
        {
            QMutexLocker lock(&m_boards.mutex);
            m_boards.calls << QStringLiteral("flash %1 %2").arg(port.c_str(), image.c_str());
            gate = m_boards.flashGate;
        }
        emit updateProgress(50);
        if (gate)
            gate->acquire();
        QMutexLocker lock(&m_boards.mutex);
        if (!m_boards.flashError.empty()) {
            error = m_boards.flashError;
            return false;
        }
        m_boards.bootloader.erase(port);
        if (!m_boards.neverReturns)
            m_boards.normal[port] = "0251";
        return true;
    }

    // Short, so that the job's polls run through at once.
    void sleep_for(unsigned int) override
    {
        {
            QMutexLocker lock(&m_boards.mutex);
            ++m_boards.sleeps;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

private:
    FakeBoards& m_boards;
};
