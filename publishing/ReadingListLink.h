#pragma once

#include "records/Url.h"

namespace quire {

// Whether the reading list may lead there: an address of a library can be any
// that somebody put into the file, and one of javascript: is a program.
inline bool isLinkable(const Url &url)
{
    return url.text().startsWith(u"https://", Qt::CaseInsensitive)
        || url.text().startsWith(u"http://", Qt::CaseInsensitive);
}

} // namespace quire
