// What an answer of Netlify tells, as far as anybody asks. Nothing in it fails:
// a member that is missing or of another type is absent, and so is every member
// of an answer that is no object at all.
//
// Thread: a plain value, any thread.

#pragma once

#include "records/Url.h"
#include "sources/JSONValue.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace quire {

class NetlifyAnswer
{
public:
    static NetlifyAnswer parse(const QByteArray &body);

    std::optional<QString> text(QStringView name) const;
    // Empty unless it is a list of texts and nothing else.
    QStringList texts(QStringView name) const;

private:
    std::optional<JSONValue> m_value; // absent: not JSON
};

// Where readers find the site that `site` describes: at its own domain when it
// has one, else at the address that the service gave it. Nothing when there is no
// such address, also when there is another beside a domain that is none.
std::optional<Url> netlifySiteURL(const NetlifyAnswer &site);

} // namespace quire
