#include "records/RecordCoding.h"

#include "records/RecordFields.h"

#include <QCborStreamReader>

#include <bitset>
#include <limits>
#include <utility>

namespace quire {

namespace {

using RecordFields::fieldsOf;

// A cover is at most 20,000,000 bytes when it is fetched; a stored length far
// beyond that is damage, and not a reason to ask for memory.
constexpr qsizetype longestValue = 64 * 1024 * 1024;

// Nobody writes as much as this about a title. In memory a text takes twice the
// bytes that it has in the stream, and a short entry of a list takes far more.
constexpr qsizetype longestText = 16 * 1024 * 1024;
constexpr qsizetype mostEntries = 10'000;

// How deep a value under an unknown key may be nested and still be passed over.
constexpr int deepestUnknown = 16;

[[noreturn]] void fail(const char *detail)
{
    throw RecordCodingError(QLatin1StringView(detail));
}

// The strings of a stream may come in chunks; their lengths are looked at
// before anything is allocated for them.
template<typename Text, typename ReadChunk>
Text readChunks(QCborStreamReader &reader, qsizetype longest, ReadChunk readChunk)
{
    Text whole;
    while (true) {
        if (reader.currentStringChunkSize() > longest - whole.size()) {
            fail("a value is too long");
        }
        auto chunk = readChunk();
        if (chunk.status == QCborStreamReader::Error) {
            fail("a text or a run of bytes is damaged");
        }
        if (chunk.status == QCborStreamReader::EndOfString) {
            return whole;
        }
        if (whole.isEmpty()) {
            whole = std::move(chunk.data); // the usual single chunk is not copied
        } else {
            whole += chunk.data;
        }
    }
}

QString readText(QCborStreamReader &reader)
{
    if (!reader.isString()) {
        fail("a text was expected");
    }
    return readChunks<QString>(reader, longestText, [&reader] { return reader.readString(); });
}

void next(QCborStreamReader &reader)
{
    if (!reader.next(deepestUnknown)) {
        fail("the data end early");
    }
}

void read(QCborStreamReader &reader, QString &value)
{
    value = readText(reader);
}

void read(QCborStreamReader &reader, qint64 &value)
{
    constexpr auto largest = quint64(std::numeric_limits<qint64>::max());
    if (reader.isUnsignedInteger() && reader.toUnsignedInteger() <= largest) {
        value = qint64(reader.toUnsignedInteger());
    } else if (reader.isNegativeInteger() && quint64(reader.toNegativeInteger()) - 1 <= largest) {
        // stored as its distance from zero, which is 0 for 2^64
        value = -1 - qint64(quint64(reader.toNegativeInteger()) - 1);
    } else {
        fail("a whole number was expected");
    }
    next(reader);
}

void read(QCborStreamReader &reader, double &value)
{
    if (!reader.isDouble()) {
        fail("a number with a fraction was expected");
    }
    value = reader.toDouble();
    next(reader);
}

void read(QCborStreamReader &reader, bool &value)
{
    if (!reader.isBool()) {
        fail("true or false was expected");
    }
    value = reader.toBool();
    next(reader);
}

void read(QCborStreamReader &reader, std::optional<Url> &value)
{
    value = Url::parse(readText(reader));
    if (!value) {
        fail("a URL was expected");
    }
}

void read(QCborStreamReader &reader, std::optional<CoverBytes> &value)
{
    if (!reader.isByteArray()) {
        fail("bytes were expected");
    }
    QByteArray bytes = readChunks<QByteArray>(reader, longestValue, [&reader] { return reader.readByteArray(); });
    if (bytes.isEmpty()) {
        fail("a cover without bytes");
    }
    value.emplace(std::move(bytes));
}

void read(QCborStreamReader &reader, QStringList &value)
{
    if (!reader.isArray() || !reader.enterContainer()) {
        fail("a list was expected");
    }
    value.clear();
    while (reader.hasNext()) {
        if (value.size() == mostEntries) {
            fail("a list is too long");
        }
        value.append(readText(reader));
    }
    if (!reader.leaveContainer()) {
        fail("the data end early");
    }
}

template<typename T>
void read(QCborStreamReader &reader, std::optional<T> &value)
{
    read(reader, value.emplace());
}

template<typename T>
constexpr bool isOptional(const T &)
{
    return false;
}

template<typename T>
constexpr bool isOptional(const std::optional<T> &)
{
    return true;
}

// Reads the value of the field at `Index` if its key is this one.
template<std::size_t Index, typename Record, typename Seen>
bool readIfKey(QCborStreamReader &reader, const QString &key, Record &record, Seen &seen)
{
    const auto &candidate = std::get<Index>(fieldsOf<Record>());
    if (key != candidate.key) {
        return false;
    }
    if (seen.test(Index)) {
        fail("a key stands twice");
    }
    read(reader, record.*(candidate.member));
    seen.set(Index);
    return true;
}

template<typename Record, std::size_t... Indices>
Record decodeFields(QCborStreamReader &reader, std::index_sequence<Indices...>)
{
    Record record;
    std::bitset<sizeof...(Indices)> seen;
    while (reader.hasNext()) {
        const QString key = readText(reader);
        if (!(readIfKey<Indices>(reader, key, record, seen) || ...)) {
            next(reader);
        }
    }
    const auto require = [&](std::size_t index, const auto &candidate) {
        if (!seen.test(index) && !isOptional(record.*(candidate.member))) {
            throw RecordCodingError(QStringLiteral("the key %1 is missing").arg(candidate.key));
        }
    };
    (require(Indices, std::get<Indices>(fieldsOf<Record>())), ...);
    return record;
}

template<typename Record>
Record decodeRecord(QCborStreamReader &reader)
{
    using Fields = std::remove_cvref_t<decltype(fieldsOf<Record>())>;
    if (!reader.isMap() || !reader.enterContainer()) {
        fail("a map was expected");
    }
    Record record = decodeFields<Record>(reader, std::make_index_sequence<std::tuple_size_v<Fields>>());
    if (!reader.leaveContainer()) {
        fail("the data end early");
    }
    return record;
}

} // namespace

RecordCodingError::RecordCodingError(QString detail)
    : m_detail(std::move(detail))
{
}

QString RecordCodingError::description() const
{
    return QStringLiteral("A stored record could not be read: ") + m_detail + QLatin1Char('.');
}

template<>
Book decode(QCborStreamReader &reader)
{
    return decodeRecord<Book>(reader);
}

template<>
Audiobook decode(QCborStreamReader &reader)
{
    return decodeRecord<Audiobook>(reader);
}

template<>
TagCount decode(QCborStreamReader &reader)
{
    return decodeRecord<TagCount>(reader);
}

template<>
AudibleCatalogBook decode(QCborStreamReader &reader)
{
    return decodeRecord<AudibleCatalogBook>(reader);
}

template<>
CustomAccentColor decode(QCborStreamReader &reader)
{
    return decodeRecord<CustomAccentColor>(reader);
}

} // namespace quire
