// A failure of an outside service. What the retry policy must know of it stands
// here, below the services themselves.

#pragma once

#include "records/Failure.h"

#include <optional>

namespace quire {

class HttpFailure : public Failure
{
public:
    // The status of the answer that was the failure; nothing when it was
    // something else than an answer's status.
    virtual std::optional<int> httpStatus() const = 0;
};

} // namespace quire
