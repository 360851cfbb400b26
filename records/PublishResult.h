#pragma once

#include "records/Url.h"

#include <QStringList>

#include <optional>

namespace quire {

// Outcome of one publication.
struct PublishResult
{
    bool localSucceeded = false;
    bool onlineSucceeded = false;
    std::optional<Url> localPath;
    std::optional<Url> siteURL;
    QStringList errors;

    bool operator==(const PublishResult &) const = default;
};

} // namespace quire
