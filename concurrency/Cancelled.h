// The failure of a task that was asked to stop. Never shown to the reader and
// never worth another try.

#pragma once

#include "records/Failure.h"

namespace quire {

class Cancelled final : public Failure
{
public:
    QString description() const override { return QStringLiteral("The operation was cancelled."); }
};

} // namespace quire
