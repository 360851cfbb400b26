// What the Insights section shows: the numbers of the library in words, two
// charts and two lists of books. Computes nothing but the words.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/BarListModel.h"
#include "QuireApp/ViewModels/LibraryListModel.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class InsightsViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    // The books being read, and the last ones finished; newest first.
    Q_PROPERTY(quire::LibraryListModel *currentBooks READ currentBooks CONSTANT)
    Q_PROPERTY(quire::LibraryListModel *recentBooks READ recentBooks CONSTANT)
    Q_PROPERTY(bool hasRecentFinishes READ hasRecentFinishes NOTIFY changed)

    Q_PROPERTY(QString year READ year NOTIFY changed)
    Q_PROPERTY(QString booksFinished READ booksFinished NOTIFY changed)
    Q_PROPERTY(QString pagesRead READ pagesRead NOTIFY changed)
    Q_PROPERTY(QString ratingThisYear READ ratingThisYear NOTIFY changed)
    Q_PROPERTY(QString activeMonths READ activeMonths NOTIFY changed)

    Q_PROPERTY(quire::BarListModel *months READ months CONSTANT)
    Q_PROPERTY(QString rhythm READ rhythm NOTIFY changed)
    Q_PROPERTY(quire::BarListModel *ratings READ ratings CONSTANT)
    Q_PROPERTY(QString averageRating READ averageRating NOTIFY changed)

    Q_PROPERTY(QString topAuthor READ topAuthor NOTIFY changed)
    Q_PROPERTY(QString topAuthorDetail READ topAuthorDetail NOTIFY changed)
    Q_PROPERTY(QString strongestMonth READ strongestMonth NOTIFY changed)
    Q_PROPERTY(QString strongestMonthDetail READ strongestMonthDetail NOTIFY changed)
    Q_PROPERTY(QString averageLength READ averageLength NOTIFY changed)
    Q_PROPERTY(QString fiveStars READ fiveStars NOTIFY changed)
    Q_PROPERTY(QString fiveStarsDetail READ fiveStarsDetail NOTIFY changed)
    Q_PROPERTY(QStringList tags READ tags NOTIFY changed)

public:
    // model outlives this.
    explicit InsightsViewModel(AppModel &model, QObject *parent = nullptr);

    LibraryListModel *currentBooks() { return &m_currentBooks; }
    LibraryListModel *recentBooks() { return &m_recentBooks; }
    bool hasRecentFinishes() const;

    QString year() const;
    QString booksFinished() const;
    QString pagesRead() const;
    QString ratingThisYear() const;
    QString activeMonths() const;

    BarListModel *months() { return &m_months; }
    QString rhythm() const;
    BarListModel *ratings() { return &m_ratings; }
    QString averageRating() const;

    QString topAuthor() const;
    QString topAuthorDetail() const;
    QString strongestMonth() const;
    QString strongestMonthDetail() const;
    QString averageLength() const;
    QString fiveStars() const;
    QString fiveStarsDetail() const;
    QStringList tags() const;

Q_SIGNALS:
    void changed();

private:
    void updateBooks();
    void updateNumbers();

    AppModel &m_model;
    LibraryListModel m_currentBooks;
    LibraryListModel m_recentBooks;
    BarListModel m_months;
    BarListModel m_ratings;
};

// The visible books on the shelf "currently-reading", newest recency first;
// those of one recency stay in their order.
QList<Book> currentlyReading(const QList<Book> &books);

// The visible books with one of these row ids, newest recency first.
QList<Book> recentlyFinished(const QList<Book> &books, const QList<qint64> &ids);

} // namespace quire
