// Addresses at the outside services, made of an endpoint and the rest.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/Url.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

namespace quire::ServiceURL {

using QueryItems = QList<std::pair<QString, QString>>;

// What to request: `path`, decoded and with its leading "/", and the items in
// their order, escaped so that no character of a value is taken for another or
// for a separator. Throws ServiceError invalidURL when the endpoint is empty.
QUrl request(const QUrl &endpoint, const QString &path, const QueryItems &items);

// What to remember or to show: `path` as it stands after the endpoint, query
// included; nothing when that is no URL.
std::optional<Url> address(const QUrl &endpoint, const QString &path);

} // namespace quire::ServiceURL
