// What the Insights section shows.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/LibraryListModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quire {

class AppModel;

class InsightsViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    // The books being read, the one begun last first.
    Q_PROPERTY(quire::LibraryListModel *currentBooks READ currentBooks CONSTANT)
    Q_PROPERTY(bool hasFinishedBooks READ hasFinishedBooks NOTIFY finishedChanged)

public:
    // model outlives this.
    explicit InsightsViewModel(AppModel &model, QObject *parent = nullptr);

    LibraryListModel *currentBooks() { return &m_currentBooks; }
    bool hasFinishedBooks() const { return m_hasFinishedBooks; }

Q_SIGNALS:
    void finishedChanged();

private:
    void update();

    AppModel &m_model;
    LibraryListModel m_currentBooks;
    bool m_hasFinishedBooks = false;
};

// The visible books on the shelf "currently-reading", newest recency first;
// those of one recency stay in their order.
QList<Book> currentlyReading(const QList<Book> &books);

} // namespace quire
