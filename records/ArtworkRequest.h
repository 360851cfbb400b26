#pragma once

#include "records/Enumerations.h"
#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// One cover to fetch.
struct ArtworkRequest
{
    ArtworkKind kind = ArtworkKind::Book;
    qint64 id = 0; // row of the title
    QString title;
    std::optional<Url> sourceURL;

    bool operator==(const ArtworkRequest &) const = default;
};

} // namespace quire
