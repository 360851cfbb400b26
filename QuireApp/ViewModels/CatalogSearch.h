// A search of a catalogue that the reader starts: what is asked, whether an
// answer is awaited, why there is none. What is found lies with the one who
// searches.
//
// Thread: interface thread.

#pragma once

#include "concurrency/TaskSlot.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <stop_token>

namespace quire {

class CatalogSearch : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by a view model")

    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY stateChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged) // empty for none

public:
    static constexpr int resultLimit = 8;

    // Asks the catalogue and keeps what it found; how many that was. Throws the
    // failure of the service. It touches nothing once `stop` is requested.
    using Lookup = std::function<QCoro::Task<qsizetype>(QString query, std::stop_token stop)>;

    // forget: empties what was found.
    CatalogSearch(Lookup lookup, std::function<void()> forget, QObject *parent = nullptr);

    const QString &query() const { return m_query; }
    void setQuery(const QString &query);
    bool isSearching() const { return m_isSearching; }
    const QString &errorMessage() const { return m_errorMessage; }

    // Asks the catalogue; a search under way is dropped with its results.
    Q_INVOKABLE void search();

    // As new.
    void clear();

Q_SIGNALS:
    void queryChanged();
    void stateChanged();

private:
    QCoro::Task<> run(QString query, std::stop_token stop);
    void setState(bool isSearching, const QString &errorMessage);

    Lookup m_lookup;
    std::function<void()> m_forget;
    QString m_query;
    bool m_isSearching = false;
    QString m_errorMessage;
    TaskSlot m_searchTask;
};

} // namespace quire
