// How the reading list writes dates and numbers in one language. What recurs in
// a list of thousands (the names of the months, a rating) is made once and kept;
// what is returned by reference or as a view is good until the next call.
//
// Thread: one object, one thread.

#pragma once

#include "records/Instant.h"

#include <QHash>
#include <QLocale>
#include <QString>

#include <array>
#include <optional>

namespace quire {

// Appends the decimal digits of a count or a year: the same in every language.
void appendPlainNumber(QString &text, qint64 number);

class ReadingListForms
{
public:
    explicit ReadingListForms(const QLocale &locale);

    // Month by name and time of day by the clock of New York: "November 21, 2026
    // 7:04 AM".
    QString publishedDate(Instant moment) const;

    // "Mar 5, 2026", of the machine's zone; nothing for a text that is no date.
    std::optional<QStringView> day(const std::optional<QString> &date);

    // "12,345"
    QString grouped(qint64 count) const;

    // "4.2", or "N/A" for one that is not above 0.
    QString average(double average) const;

    // "4.5", "4": at most two digits of fraction.
    const QString &rating(double rating);

    // "★★★★½ (4.5/5)", or "Unrated" for one that is not above 0. A rating beyond
    // any scale gets no more than a hundred stars.
    const QString &stars(double rating);

private:
    void appendDigits(unsigned number, int width);

    QLocale m_locale;
    QString m_longDate; // format
    std::array<QString, 12> m_months; // short names
    QChar m_zero; // null: the language's digits are pairs of surrogates
    QString m_day;
    QHash<double, QString> m_ratings;
    QHash<double, QString> m_stars;
    const QString m_unrated = QStringLiteral("Unrated");
};

} // namespace quire
