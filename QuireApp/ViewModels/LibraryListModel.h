// The titles that a grid or a list of cards shows. A new list changes only the
// rows that differ, and adds or removes only what it has more or fewer: a reload
// which changes nothing on the screen keeps scroll position, hover and focus, and
// a search is shown by the cards that are there.
//
// Thread: interface thread.

#pragma once

#include "core/LibrarySlice.h"
#include "QuireApp/Covers/CoverSource.h"
#include "records/Audiobook.h"
#include "records/Book.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

// What a card shows of one title.
struct LibraryRow
{
    qint64 id = 0; // database row
    QString title;
    QString author;
    QString pages; // "320 pages", empty when not known
    CoverSource cover;
    bool isHidden = false;

    static LibraryRow of(const Book &book);
    static LibraryRow of(const Audiobook &audiobook);

    bool operator==(const LibraryRow &) const = default;
};

class LibraryListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by a view model")

    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        RowIdRole = Qt::UserRole + 1,
        TitleRole,
        AuthorRole,
        PagesRole,
        CoverRole,
        AccessibleNameRole,
        IsHiddenRole,
    };
    Q_ENUM(Role)

    explicit LibraryListModel(QObject *parent = nullptr);

    void show(const QList<LibraryRow> &rows);

    template<typename Record>
    void show(const LibrarySlice<Record> &titles)
    {
        QList<LibraryRow> rows;
        rows.reserve(titles.size());
        for (const Record &title : titles) {
            rows.append(LibraryRow::of(title));
        }
        show(rows);
    }

    int count() const { return int(m_rows.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void remove(qsizetype from, qsizetype count);
    void insert(qsizetype from, const QList<LibraryRow> &added);
    void overwrite(const QList<LibraryRow> &rows); // as many as there are

    QList<LibraryRow> m_rows;
};

} // namespace quire
