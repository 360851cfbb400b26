// Hashing of optional fields, which Qt does not bring.

#pragma once

#include <QHash>

#include <optional>

namespace quire {

template<typename T>
size_t hashed(const std::optional<T> &value)
{
    // Combined, not plain: the hash of an empty text may be that of absence.
    return value ? qHashMulti(1, *value) : 0;
}

} // namespace quire
