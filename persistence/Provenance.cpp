#include "persistence/Provenance.h"

namespace quire {

namespace {

enum Parameter { Kind = 1, EntityID, FieldName, SourceName, ValueHash, Applied };

constexpr auto upsertSql = R"sql(
    INSERT INTO field_provenance (
      entity_kind, entity_id, field_name, source, first_seen_at,
      last_seen_at, last_value_hash, applied
    ) VALUES (?, ?, ?, ?, datetime('now'), datetime('now'), ?, ?)
    ON CONFLICT(entity_kind, entity_id, field_name, source) DO UPDATE SET
      last_seen_at = datetime('now'),
      last_value_hash = excluded.last_value_hash,
      applied = MAX(field_provenance.applied, excluded.applied)
)sql";

QString nameOf(EntityKind kind)
{
    switch (kind) {
    case EntityKind::Book:
        return QStringLiteral("book");
    case EntityKind::Audiobook:
        return QStringLiteral("audiobook");
    }
    Q_UNREACHABLE();
}

QString nameOf(Source source)
{
    switch (source) {
    case Source::Quire:
        return QStringLiteral("quire");
    case Source::Goodreads:
        return QStringLiteral("goodreads");
    case Source::Audible:
        return QStringLiteral("audible");
    }
    Q_UNREACHABLE();
}

} // namespace

// Bindings outlive a rewind, so what does not change from row to row or from
// field to field is bound once: an import writes a dozen fields a title.
ProvenanceWriter::ProvenanceWriter(const SQLiteDatabase &database, EntityKind kind, Source source)
    : m_upsert(database, upsertSql)
{
    m_upsert.bind(Kind, nameOf(kind));
    m_upsert.bind(SourceName, nameOf(source));
}

void ProvenanceWriter::record(qint64 entityID, const FieldValues &fields, bool applied)
{
    m_upsert.bind(EntityID, entityID);
    m_upsert.bind(Applied, int(applied));
    const auto &values = fields.values();
    for (auto field = values.cbegin(); field != values.cend(); ++field) {
        const SQLiteStatement::Rewind rewind(m_upsert);
        m_upsert.bind(FieldName, field.key());
        m_upsert.bind(ValueHash, hashed(field.value()));
        m_upsert.step();
    }
}

QString ProvenanceWriter::hashed(const QString &value)
{
    m_hash.reset();
    m_hash.addData(value.toUtf8());
    const QByteArrayView digest = m_hash.resultView();
    return QString::fromLatin1(QByteArray::fromRawData(digest.data(), digest.size()).toHex());
}

void recordEdit(const SQLiteDatabase &database, EntityKind kind, qint64 entityID, const FieldValues &fields)
{
    ProvenanceWriter(database, kind, Source::Quire).record(entityID, fields, true);
}

} // namespace quire
