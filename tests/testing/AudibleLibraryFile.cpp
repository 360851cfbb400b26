#include "testing/AudibleLibraryFile.h"

#include <QStringList>

namespace quire::testing {

namespace {

constexpr auto schema = R"sql(
    CREATE TABLE products (
        asin, title, authors, narrators, relationships, productImages, publisherSummary, runtimeLength,
        releaseDate, rating, contentType);
    CREATE TABLE library_item (asin, purchaseDate, json_data);
    CREATE TABLE user_products (asin, isStarted, isFinished, customerEntitlements_consumableIndefinitely);
)sql";

const QStringList ofLibraryItem{QStringLiteral("purchaseDate"), QStringLiteral("json_data")};
const QStringList ofUserProduct{QStringLiteral("isStarted"), QStringLiteral("isFinished"),
    QStringLiteral("customerEntitlements_consumableIndefinitely")};

} // namespace

AudibleLibraryFile::AudibleLibraryFile(const QString &path)
    : m_database(path)
{
    m_database.executeScript(schema);
}

void AudibleLibraryFile::addTitle(const QString &asin, const QString &title, const AudibleColumns &columns)
{
    AudibleColumns product{{QStringLiteral("asin"), asin}, {QStringLiteral("title"), title},
        {QStringLiteral("contentType"), QStringLiteral("Product")}};
    AudibleColumns libraryItem{{QStringLiteral("asin"), asin}};
    AudibleColumns userProduct{{QStringLiteral("asin"), asin}};
    for (auto at = columns.begin(); at != columns.end(); ++at) {
        AudibleColumns &table = ofLibraryItem.contains(at.key()) ? libraryItem
            : ofUserProduct.contains(at.key())                   ? userProduct
                                                                 : product;
        table.insert(at.key(), at.value());
    }
    insert(QStringLiteral("products"), product);
    insert(QStringLiteral("library_item"), libraryItem);
    if (userProduct.size() > 1) {
        insert(QStringLiteral("user_products"), userProduct);
    }
}

void AudibleLibraryFile::insert(const QString &table, const AudibleColumns &columns)
{
    const QString places = QStringList(columns.size(), QStringLiteral("?")).join(u',');
    const QString sql
        = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, QStringList(columns.keys()).join(u','), places);
    m_database.execute(sql.toUtf8().constData(), columns.values());
}

} // namespace quire::testing
