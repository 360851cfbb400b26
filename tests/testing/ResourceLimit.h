// Limits of this process, for the length of a scope. Every thread is under them.

#pragma once

#include <cerrno>
#include <csignal>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace quire::testing {

class ResourceLimit
{
public:
    ResourceLimit(decltype(RLIMIT_FSIZE) resource, rlim_t value)
        : m_resource(resource)
    {
        ::getrlimit(resource, &m_before);
        const rlimit limit{value, m_before.rlim_max};
        if (::setrlimit(resource, &limit) != 0) {
            throw std::system_error(errno, std::generic_category(), "setrlimit");
        }
    }
    ~ResourceLimit() { ::setrlimit(m_resource, &m_before); }

    ResourceLimit(const ResourceLimit &) = delete;
    ResourceLimit &operator=(const ResourceLimit &) = delete;

private:
    decltype(RLIMIT_FSIZE) m_resource;
    rlimit m_before{};
};

// No file may grow beyond this; the write fails as on a full disk.
class ShortFiles
{
public:
    explicit ShortFiles(rlim_t bytes)
        : m_before(std::signal(SIGXFSZ, SIG_IGN)) // or it would end the process
        , m_limit(RLIMIT_FSIZE, bytes)
    {
    }
    ~ShortFiles() { std::signal(SIGXFSZ, m_before); }

    ShortFiles(const ShortFiles &) = delete;
    ShortFiles &operator=(const ShortFiles &) = delete;

private:
    void (*m_before)(int);
    ResourceLimit m_limit;
};

// So many files may be opened beside those that are open, and no more.
class FewFiles
{
public:
    explicit FewFiles(std::size_t count)
        : m_limit(RLIMIT_NOFILE, highest)
    {
        // The limit is on a file's number. Taking every number that is free, and
        // giving some back, leaves exactly as many as are wanted.
        for (int file = next(); file >= 0; file = next()) {
            m_taken.push_back(file);
        }
        for (; count > 0 && !m_taken.empty(); --count) {
            ::close(m_taken.back());
            m_taken.pop_back();
        }
    }
    ~FewFiles()
    {
        for (const int file : m_taken) {
            ::close(file);
        }
    }

    FewFiles(const FewFiles &) = delete;
    FewFiles &operator=(const FewFiles &) = delete;

private:
    static constexpr rlim_t highest = 256;

    static int next() { return ::open("/dev/null", O_RDONLY | O_CLOEXEC); }

    ResourceLimit m_limit;
    std::vector<int> m_taken;
};

} // namespace quire::testing
