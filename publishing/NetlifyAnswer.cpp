#include "publishing/NetlifyAnswer.h"

#include "records/Text.h"
#include "sources/JSONDecodingError.h"

namespace quire {

namespace {

// What is there as a text that is not blank, as it stands.
std::optional<QString> nonBlank(const NetlifyAnswer &answer, QStringView name)
{
    const auto text = answer.text(name);
    return Text::nonEmptyValue(text) ? text : std::nullopt;
}

} // namespace

NetlifyAnswer NetlifyAnswer::parse(const QByteArray &body)
{
    NetlifyAnswer answer;
    try {
        answer.m_value = JSONValue::parse(body);
    } catch (const JSONDecodingError &) {
        // An answer without members.
    }
    return answer;
}

std::optional<QString> NetlifyAnswer::text(QStringView name) const
{
    try {
        return m_value ? m_value->optional(name, &JSONValue::text) : std::nullopt;
    } catch (const JSONDecodingError &) {
        return std::nullopt;
    }
}

QStringList NetlifyAnswer::texts(QStringView name) const
{
    try {
        return m_value ? m_value->optional(name, JSONValue::listOf(&JSONValue::text)).value_or(QStringList())
                       : QStringList();
    } catch (const JSONDecodingError &) {
        return {};
    }
}

std::optional<Url> netlifySiteURL(const NetlifyAnswer &site)
{
    if (const auto domain = nonBlank(site, u"custom_domain")) {
        return Url::parse(domain->contains(u"://") ? *domain : QStringLiteral("https://") + *domain);
    }
    for (const QStringView name : {u"ssl_url", u"url"}) {
        if (const auto text = nonBlank(site, name)) {
            if (auto url = Url::parse(*text)) {
                return url;
            }
        }
    }
    return std::nullopt;
}

} // namespace quire
