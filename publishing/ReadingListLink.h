#pragma once

#include "records/Url.h"

#include <optional>

namespace quire {

// Whether the reading list may lead there: an address of a library can be any
// that somebody put into the file, and one of javascript: is a program.
inline bool isLinkable(const std::optional<Url> &url)
{
    return url
        && (url->text().startsWith(u"https://", Qt::CaseInsensitive)
            || url->text().startsWith(u"http://", Qt::CaseInsensitive));
}

} // namespace quire
