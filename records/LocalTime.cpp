#include "records/LocalTime.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <limits>
#include <memory>
#include <vector>

namespace quire::LocalTime {

namespace {

using Seconds = std::int64_t; // since 1970, of the wall clock or of UTC

// The years 1 to 9999 in blocks of 2^25 seconds, about 388 days.
constexpr int blockBits = 25;
constexpr Seconds blockLength = Seconds(1) << blockBits;
constexpr Seconds firstBlock = -62'135'596'800 >> blockBits;
constexpr Seconds lastBlock = 253'402'300'799 >> blockBits;

// A change that is taken back within this time would go unseen; there is none
// in the history of the zones.
constexpr Seconds probeStep = 86'400;
constexpr Seconds margin = 2 * 86'400; // no zone is further from UTC

// The wall-clock times before `wallEnd`, and not in the stretch before, are
// ahead of UTC by `offset`; it is left at `utcEnd`. The two are not one moment
// told twice: what the clock skips or repeats is read by the former offset.
struct Stretch
{
    Seconds wallEnd;
    Seconds utcEnd;
    Seconds offset;
};

using Block = std::vector<Stretch>;

Seconds offsetAt(Seconds utc)
{
    const auto time = static_cast<std::time_t>(utc);
    std::tm local{};
    return localtime_r(&time, &local) ? local.tm_gmtoff : 0;
}

// Appends the stretches that end after `from` and not after `to`, the offsets
// at both being known. Halves the span until the second of a change is found.
void appendChanges(Block &block, Seconds from, Seconds fromOffset, Seconds to, Seconds toOffset)
{
    if (fromOffset == toOffset) {
        return;
    }
    if (to - from == 1) {
        block.push_back({to + std::max(fromOffset, toOffset), to, fromOffset});
        return;
    }
    const Seconds middle = from + (to - from) / 2;
    const Seconds middleOffset = offsetAt(middle);
    appendChanges(block, from, fromOffset, middle, middleOffset);
    appendChanges(block, middle, middleOffset, to, toOffset);
}

std::unique_ptr<const Block> makeBlock(Seconds index)
{
    auto block = std::make_unique<Block>();
    const Seconds end = (index + 1) * blockLength + margin;
    Seconds probe = index * blockLength - margin;
    Seconds offset = offsetAt(probe);
    while (probe < end) {
        const Seconds next = probe + probeStep;
        const Seconds nextOffset = offsetAt(next);
        appendChanges(*block, probe, offset, next, nextOffset);
        probe = next;
        offset = nextOffset;
    }
    constexpr Seconds never = std::numeric_limits<Seconds>::max();
    block->push_back({never, never, offset});
    return block;
}

// Blocks are made by whoever needs them first and live as long as the process.
// A block tells of its own time and of the days around it, so that it does not
// matter by which of the two clocks it is chosen.
const Block &blockOf(Seconds time)
{
    static std::array<std::atomic<const Block *>, lastBlock - firstBlock + 1> blocks;

    const Seconds index = std::clamp(time >> blockBits, firstBlock, lastBlock);
    std::atomic<const Block *> &place = blocks[static_cast<std::size_t>(index - firstBlock)];
    if (const Block *known = place.load(std::memory_order_acquire)) {
        return *known;
    }
    auto made = makeBlock(index);
    const Block *expected = nullptr;
    if (place.compare_exchange_strong(expected, made.get(), std::memory_order_acq_rel, std::memory_order_acquire)) {
        return *made.release();
    }
    return *expected; // another thread was quicker
}

} // namespace

std::chrono::sys_seconds instant(std::chrono::local_seconds wall)
{
    const Seconds seconds = wall.time_since_epoch().count();
    const Block &block = blockOf(seconds);
    auto stretch = block.begin();
    while (seconds >= stretch->wallEnd) { // the last one ends never
        ++stretch;
    }
    return std::chrono::sys_seconds(std::chrono::seconds(seconds - stretch->offset));
}

std::chrono::local_seconds wallClock(std::chrono::sys_seconds instant)
{
    const Seconds seconds = instant.time_since_epoch().count();
    const Block &block = blockOf(seconds);
    auto stretch = block.begin();
    while (seconds >= stretch->utcEnd) {
        ++stretch;
    }
    return std::chrono::local_seconds(std::chrono::seconds(seconds + stretch->offset));
}

} // namespace quire::LocalTime
