#include "records/Failure.h"

namespace quire {

Failure::~Failure() = default;

const char *Failure::what() const noexcept
{
    try {
        if (m_what.isNull()) {
            m_what = description().toUtf8();
        }
        return m_what.constData();
    } catch (...) {
        return "A failure that could not be described.";
    }
}

QString describe(const std::exception &error)
{
    if (const auto *failure = dynamic_cast<const Failure *>(&error)) {
        return failure->description();
    }
    return QString::fromLocal8Bit(error.what());
}

} // namespace quire
