#pragma once

#include <QStringView>

namespace quire {

// The first place in `text` where one of `marks` stands, or its length. Summaries
// are long and have few marks: this looks at sixteen characters at a time.
template<char16_t... marks>
qsizetype indexOfAny(QStringView text)
{
    constexpr qsizetype step = 16;
    const char16_t *const units = text.utf16();
    const qsizetype size = text.size();
    qsizetype at = 0;
    for (; at + step <= size; at += step) {
        // No way out in the middle, so that the compiler makes a few instructions
        // of it that take all characters at once.
        unsigned found = 0;
        for (qsizetype i = 0; i < step; ++i) {
            found |= (unsigned(units[at + i] == marks) | ...);
        }
        if (found != 0) {
            break;
        }
    }
    while (at < size && !((units[at] == marks) || ...)) {
        ++at;
    }
    return at;
}

} // namespace quire
