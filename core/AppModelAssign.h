// How AppModel's own files change an observable field; for them alone.

#pragma once

#include "core/AppModel.h"

#include <utility>

namespace quire {

template<typename Value>
void AppModel::assign(Value &field, std::type_identity_t<Value> value, void (AppModel::*changed)())
{
    if (field != value) {
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }
}

} // namespace quire
