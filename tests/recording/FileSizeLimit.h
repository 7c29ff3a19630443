#pragma once

#include <csignal>
#include <sys/resource.h>

// Makes every file of this process stop growing at `bytes`, as a full disk
// would, without privileges: writes beyond the limit fail with "File too
// large" instead of killing the process. The old limit comes back when the
// object goes, so a failed check cannot leave the test process crippled.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        m_valid = getrlimit(RLIMIT_FSIZE, &m_old) == 0;
        struct rlimit limited = m_old;
        limited.rlim_cur = bytes;
        m_valid = m_valid && setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit()
    {
        lift();
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    bool isValid() const { return m_valid; }
    // Space "returns": the old limit is back.
    void lift()
    {
        if (m_valid)
            setrlimit(RLIMIT_FSIZE, &m_old);
        m_valid = false;
    }

private:
    struct rlimit m_old {};
    void (*m_oldHandler)(int) = nullptr;
    bool m_valid = false;
};
