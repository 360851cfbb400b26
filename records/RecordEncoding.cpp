#include "records/RecordCoding.h"

#include "records/RecordFields.h"

#include <QCborStreamWriter>

namespace quire {

namespace {

using RecordFields::fieldsOf;

void write(QCborStreamWriter &writer, const QString &value)
{
    writer.append(QStringView(value));
}

void write(QCborStreamWriter &writer, qint64 value)
{
    writer.append(value);
}

void write(QCborStreamWriter &writer, double value)
{
    writer.append(value);
}

void write(QCborStreamWriter &writer, bool value)
{
    writer.append(value);
}

void write(QCborStreamWriter &writer, const Url &value)
{
    writer.append(QStringView(value.text()));
}

void write(QCborStreamWriter &writer, const CoverBytes &value)
{
    const QByteArray shared = value.bytes();
    writer.appendByteString(shared.constData(), shared.size());
}

void write(QCborStreamWriter &writer, const QStringList &value)
{
    writer.startArray(quint64(value.size()));
    for (const QString &text : value) {
        write(writer, text);
    }
    writer.endArray();
}

template<typename T>
bool isPresent(const T &)
{
    return true;
}

template<typename T>
bool isPresent(const std::optional<T> &value)
{
    return value.has_value();
}

template<typename T>
void writeField(QCborStreamWriter &writer, QLatin1StringView key, const T &value)
{
    writer.append(key);
    write(writer, value);
}

template<typename T>
void writeField(QCborStreamWriter &writer, QLatin1StringView key, const std::optional<T> &value)
{
    if (value) {
        writeField(writer, key, *value);
    }
}

template<typename Record>
void encodeRecord(QCborStreamWriter &writer, const Record &record)
{
    std::apply(
        [&](const auto &...fields) {
            writer.startMap((quint64(isPresent(record.*(fields.member))) + ...));
            (writeField(writer, fields.key, record.*(fields.member)), ...);
        },
        fieldsOf<Record>());
    writer.endMap();
}

} // namespace

void encode(QCborStreamWriter &writer, const Book &book)
{
    encodeRecord(writer, book);
}

void encode(QCborStreamWriter &writer, const Audiobook &audiobook)
{
    encodeRecord(writer, audiobook);
}

void encode(QCborStreamWriter &writer, const TagCount &tagCount)
{
    encodeRecord(writer, tagCount);
}

void encode(QCborStreamWriter &writer, const AudibleCatalogBook &book)
{
    encodeRecord(writer, book);
}

void encode(QCborStreamWriter &writer, const CustomAccentColor &color)
{
    encodeRecord(writer, color);
}

} // namespace quire
