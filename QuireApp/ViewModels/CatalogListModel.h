// The results of a catalogue search as rows, each with the words that its view
// shows.
//
// Thread: interface thread.

#pragma once

#include "records/CatalogBooks.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace quire {

struct CatalogRow
{
    QString title;
    QString author;
    QString narrator; // empty for none, as all below
    QString series; // with the number in it
    QStringList details; // small print, each beside the other
    QUrl coverUrl;

    static CatalogRow of(const BookCatalogBook &book);
    static CatalogRow of(const AudibleCatalogBook &book);

    bool operator==(const CatalogRow &) const = default;
};

class CatalogListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by a view model")

    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TitleRole = Qt::UserRole, AuthorRole, NarratorRole, SeriesRole, DetailsRole, CoverUrlRole };

    explicit CatalogListModel(QObject *parent = nullptr);

    int count() const { return int(m_rows.size()); }

    template<typename Record>
    void show(const QList<Record> &records)
    {
        QList<CatalogRow> rows;
        rows.reserve(records.size());
        for (const Record &record : records) {
            rows.append(CatalogRow::of(record));
        }
        showRows(std::move(rows));
    }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void showRows(QList<CatalogRow> rows);

    QList<CatalogRow> m_rows;
};

} // namespace quire
