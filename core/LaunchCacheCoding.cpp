#include "core/LaunchCacheCoding.h"

#include "records/RecordCoding.h"

#include <QCborMap>
#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QIODevice>

namespace quire::LaunchCacheCoding {

namespace {

constexpr QLatin1StringView schemaVersionKey("schemaVersion");
constexpr QLatin1StringView databasePathKey("databasePath");
constexpr QLatin1StringView booksKey("books");
constexpr QLatin1StringView audiobooksKey("audiobooks");
constexpr QLatin1StringView tagsKey("tags");

constexpr QLatin1StringView sidebarAppearanceKey("sidebarAppearance");
constexpr QLatin1StringView interfaceFontKey("interfaceFont");
constexpr QLatin1StringView accentColorKey("accentColor");
constexpr QLatin1StringView usesCustomAccentColorKey("usesCustomAccentColor");
constexpr QLatin1StringView customAccentColorKey("customAccentColor");
constexpr QLatin1StringView showBooksSectionKey("showBooksSection");
constexpr QLatin1StringView showAudioSectionKey("showAudioSection");
constexpr QLatin1StringView selectedTabKey("selectedTab");

// Far more than a library has. A few bytes of a damaged file may stand for a
// title or a tag that takes hundreds in memory.
constexpr qsizetype mostRecords = 250'000;
constexpr qsizetype mostTagsOfBooks = 2'500'000;
constexpr qint64 mostBytesBesideCovers = 256LL * 1024 * 1024;
constexpr qsizetype longestName = 64 * 1024; // of a key or a path

[[noreturn]] void fail(const QString &detail)
{
    throw RecordCodingError(detail);
}

// Preferences -----------------------------------------------------------------

template<typename Enumeration>
Enumeration word(const QCborMap &map, QLatin1StringView key)
{
    const auto value = fromRawValue<Enumeration>(map[key].toString());
    if (!value) {
        fail(key + QStringLiteral(" is no known word"));
    }
    return *value;
}

bool flag(const QCborMap &map, QLatin1StringView key)
{
    const QCborValue value = map[key];
    if (!value.isBool()) {
        fail(key + QStringLiteral(" is neither true nor false"));
    }
    return value.toBool();
}

std::optional<CustomAccentColor> color(const QCborMap &map, QLatin1StringView key)
{
    if (!map.contains(key)) {
        return std::nullopt;
    }
    QCborStreamReader reader(map[key].toCbor());
    return decode<CustomAccentColor>(reader);
}

// The library -----------------------------------------------------------------

template<typename Record>
void appendList(QCborStreamWriter &writer, QLatin1StringView key, const QList<Record> &records)
{
    writer.append(key);
    writer.startArray(quint64(records.size()));
    for (const Record &record : records) {
        encode(writer, record);
    }
    writer.endArray();
}

class SnapshotReader
{
public:
    SnapshotReader(QIODevice &device, const std::stop_token &stop)
        : m_reader(&device)
        , m_stop(stop)
    {
    }

    QuireLibrarySnapshot read(const QString &databasePath)
    {
        if (!m_reader.isMap() || !m_reader.enterContainer()) {
            fail(QStringLiteral("a map was expected"));
        }
        QuireLibrarySnapshot snapshot;
        expectKey(schemaVersionKey);
        if (!m_reader.isUnsignedInteger() || m_reader.toUnsignedInteger() != QuireLibrarySnapshot::currentVersion
            || !m_reader.next()) {
            fail(QStringLiteral("another version"));
        }
        expectKey(databasePathKey);
        snapshot.databasePath = name();
        if (snapshot.databasePath != databasePath) {
            fail(QStringLiteral("another library"));
        }
        expectKey(booksKey);
        readList(snapshot.books);
        expectKey(audiobooksKey);
        readList(snapshot.audiobooks);
        expectKey(tagsKey);
        readList(snapshot.tags);
        if (!m_reader.leaveContainer()) {
            fail(QStringLiteral("the data end early"));
        }
        if (m_reader.currentOffset() != m_reader.device()->size()) {
            fail(QStringLiteral("something follows the data"));
        }
        return snapshot;
    }

private:
    void expectKey(QLatin1StringView key)
    {
        if (!m_reader.hasNext() || name() != key) {
            fail(QStringLiteral("the key %1 is missing").arg(key));
        }
    }

    QString name()
    {
        QString text;
        if (!m_reader.isString()) {
            fail(QStringLiteral("a text was expected"));
        }
        while (m_reader.currentStringChunkSize() <= longestName - text.size()) {
            const auto chunk = m_reader.readString();
            if (chunk.status == QCborStreamReader::EndOfString) {
                return text;
            }
            if (chunk.status == QCborStreamReader::Error) {
                fail(QStringLiteral("a text is damaged"));
            }
            text += chunk.data;
        }
        fail(QStringLiteral("a name is too long"));
    }

    template<typename Record>
    void readList(QList<Record> &records)
    {
        if (!m_reader.isArray() || !m_reader.enterContainer()) {
            fail(QStringLiteral("a list was expected"));
        }
        while (m_reader.hasNext()) {
            records.append(decode<Record>(m_reader));
            count(records.last());
            if (records.size() > mostRecords || m_tagsOfBooks > mostTagsOfBooks
                || m_reader.currentOffset() - m_coverBytes > mostBytesBesideCovers) {
                fail(QStringLiteral("a list is too long"));
            }
            if (m_stop.stop_requested()) {
                fail(QStringLiteral("nobody waits for it"));
            }
        }
        if (!m_reader.leaveContainer()) {
            fail(QStringLiteral("the data end early"));
        }
    }

    void count(const Book &book)
    {
        m_tagsOfBooks += book.tags.size();
        m_coverBytes += book.coverData ? book.coverData->size() : 0;
    }
    void count(const Audiobook &audiobook) { m_coverBytes += audiobook.coverData ? audiobook.coverData->size() : 0; }
    void count(const TagCount &) { }

    QCborStreamReader m_reader;
    const std::stop_token &m_stop;
    qsizetype m_tagsOfBooks = 0;
    qint64 m_coverBytes = 0;
};

} // namespace

QByteArray encode(const QuireLaunchPreferences &preferences)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    const auto append = [&writer](QLatin1StringView key, const auto &value) {
        writer.append(key);
        writer.append(value);
    };
    writer.startMap(preferences.customAccentColor ? 8 : 7);
    append(sidebarAppearanceKey, QStringView(rawValue(preferences.sidebarAppearance)));
    append(interfaceFontKey, QStringView(rawValue(preferences.interfaceFont)));
    append(accentColorKey, QStringView(rawValue(preferences.accentColor)));
    append(usesCustomAccentColorKey, preferences.usesCustomAccentColor);
    if (preferences.customAccentColor) {
        writer.append(customAccentColorKey);
        quire::encode(writer, *preferences.customAccentColor);
    }
    append(showBooksSectionKey, preferences.showBooksSection);
    append(showAudioSectionKey, preferences.showAudioSection);
    append(selectedTabKey, QStringView(rawValue(preferences.selectedTab)));
    writer.endMap();
    return bytes;
}

QuireLaunchPreferences decodePreferences(const QByteArray &bytes)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bytes, &error);
    if (error.error != QCborError::NoError || error.offset != bytes.size() || !value.isMap()) {
        fail(QStringLiteral("a map was expected"));
    }
    const QCborMap map = value.toMap();
    return {
        .sidebarAppearance = word<SidebarAppearance>(map, sidebarAppearanceKey),
        .interfaceFont = word<InterfaceFontChoice>(map, interfaceFontKey),
        .accentColor = word<AccentColorChoice>(map, accentColorKey),
        .usesCustomAccentColor = flag(map, usesCustomAccentColorKey),
        .customAccentColor = color(map, customAccentColorKey),
        .showBooksSection = flag(map, showBooksSectionKey),
        .showAudioSection = flag(map, showAudioSectionKey),
        .selectedTab = word<LibraryTab>(map, selectedTabKey),
    };
}

void write(QIODevice &device, const QuireLibrarySnapshot &snapshot)
{
    QCborStreamWriter writer(&device);
    writer.startMap(5);
    writer.append(schemaVersionKey);
    writer.append(snapshot.schemaVersion);
    writer.append(databasePathKey);
    writer.append(QStringView(snapshot.databasePath));
    appendList(writer, booksKey, snapshot.books);
    appendList(writer, audiobooksKey, snapshot.audiobooks);
    appendList(writer, tagsKey, snapshot.tags);
    writer.endMap();
}

QuireLibrarySnapshot read(QIODevice &device, const QString &databasePath, const std::stop_token &stop)
{
    return SnapshotReader(device, stop).read(databasePath);
}

} // namespace quire::LaunchCacheCoding
