// The clock of the running program.

#pragma once

#include "concurrency/Clock.h"

namespace quire {

class SystemClock final : public Clock
{
public:
    Instant now() const override;
    QCoro::Task<> sleep(std::chrono::nanoseconds duration, std::stop_token stop) override;
};

} // namespace quire
