// UUIDs as Quire writes them: 36 characters, letters in upper case, no braces.
//
// Thread: pure functions, any thread.

#pragma once

#include <QString>
#include <QUuid>

#include <optional>

namespace quire::UUIDText {

QString of(const QUuid &uuid);

// A new one at every call.
QString fresh();

// The UUID that is spelt, in either case of the letters; nothing for any other
// form.
std::optional<QUuid> parsed(const QString &text);

} // namespace quire::UUIDText
