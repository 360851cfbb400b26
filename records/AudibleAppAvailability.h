#pragma once

#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// Whether the Audible application's library can be read.
struct AudibleAppAvailability
{
    enum class State {
        NotInstalled,
        Installed,
    };

    State state = State::NotInstalled;
    std::optional<Url> appURL; // when installed
    std::optional<Url> libraryURL; // when its database was found

    bool isInstalled() const { return state == State::Installed; }

    // What the settings window says of it.
    QString detail() const;

    bool operator==(const AudibleAppAvailability &) const = default;
};

} // namespace quire
