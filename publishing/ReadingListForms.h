// How the reading list writes dates and numbers in one language. What recurs in
// a list of thousands (a day, a rating) is made once and kept.
//
// Thread: one object, one thread.

#pragma once

#include "records/Instant.h"

#include <QHash>
#include <QLocale>
#include <QString>

#include <optional>

namespace quire {

class ReadingListForms
{
public:
    explicit ReadingListForms(const QLocale &locale);

    // Month by name and time of day by the clock of New York: "November 21, 2026
    // 7:04 AM".
    QString publishedDate(Instant moment) const;

    // "Mar 5, 2026", of the machine's zone; nothing for a text that is no date.
    std::optional<QString> day(const std::optional<QString> &date);

    // "12,345"
    QString grouped(qint64 count) const;

    // "4.2", or "N/A" for one that is not above 0.
    QString average(double average) const;

    // "4.5", "4": at most two digits of fraction.
    QString rating(double rating);

    // "★★★★½ (4.5/5)", or "Unrated" for one that is not above 0. A rating beyond
    // any scale gets no more than a hundred stars.
    QString stars(double rating);

private:
    QLocale m_locale;
    QString m_longDate; // format
    QHash<qint64, QString> m_days; // by days since 1970
    QHash<double, QString> m_ratings;
    QHash<double, QString> m_stars;
};

} // namespace quire
