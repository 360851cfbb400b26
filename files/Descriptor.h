// An open file descriptor, closed on every path.
//
// Thread: one at a time.

#pragma once

#include <utility>

#include <unistd.h>

namespace quire {

class Descriptor
{
public:
    // number: as open(2) gave it; below zero for none.
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    // Below zero when nothing is open.
    int number() const { return m_number; }

    // Closes at once, for those to whom its failure matters: 0, or -1 with errno.
    int close()
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 ? 0 : ::close(number);
    }

private:
    int m_number;
};

} // namespace quire
