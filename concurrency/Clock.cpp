#include "concurrency/Clock.h"

namespace quire {

Clock::~Clock() = default;

} // namespace quire
