// Hashing of optional fields, which Qt does not bring.

#pragma once

#include <QHash>

#include <optional>

namespace quire {

template<typename T>
size_t hashed(const std::optional<T> &value)
{
    using ::qHash; // and by argument-dependent lookup that of T
    return value ? qHash(*value, 1) : 0;
}

} // namespace quire
