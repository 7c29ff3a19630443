#pragma once

#include <cstdint>

namespace vrnsim {

// One armed failure: answers `status` for the next `remaining` calls, or for
// every call until cleared when armed with a count of 0.
class FaultCounter
{
public:
    void arm(int32_t status, uint32_t count)
    {
        m_status = status;
        m_remaining = count;
        m_forever = count == 0;
        m_armed = true;
    }
    void clear() { m_armed = false; }

    // True (and the status) when this call must fail.
    bool take(int32_t& status)
    {
        if (!m_armed)
            return false;
        status = m_status;
        if (!m_forever && --m_remaining == 0)
            m_armed = false;
        return true;
    }

private:
    int32_t m_status = 0;
    uint32_t m_remaining = 0;
    bool m_forever = false;
    bool m_armed = false;
};

}  // namespace vrnsim
