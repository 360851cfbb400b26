#include "core/AppModelDependencies.h"

#include <QRandomGenerator>

namespace quire {

std::chrono::nanoseconds randomDelay(std::chrono::nanoseconds maximum)
{
    return std::chrono::nanoseconds(QRandomGenerator::global()->bounded(qint64(0), qint64(maximum.count()) + 1));
}

} // namespace quire
