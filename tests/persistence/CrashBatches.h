// The batches that tst_ImportCrash lets a child process import and die over.

#pragma once

#include "records/AudibleLibraryItem.h"
#include "records/GoodreadsFeedBook.h"

#include <QList>

namespace quire::testing {

// `count` titles. The library that takes them has the first half of them
// already, bare; `full` ones bring an author to it and move it on.
inline QList<GoodreadsFeedBook> crashFeed(int count, bool full)
{
    QList<GoodreadsFeedBook> batch;
    for (int i = 1; i <= count; ++i) {
        GoodreadsFeedBook book;
        book.goodreadsID = QString::number(i);
        book.title = QStringLiteral("Title %1").arg(i);
        book.author = full ? QStringLiteral("Author %1").arg(i) : QString();
        book.shelf = full ? QStringLiteral("read") : QStringLiteral("to-read");
        batch.append(book);
    }
    return batch;
}

inline QList<AudibleLibraryItem> crashItems(int count, bool full)
{
    QList<AudibleLibraryItem> batch;
    for (int i = 1; i <= count; ++i) {
        AudibleLibraryItem item;
        item.asin = QStringLiteral("B%1").arg(i);
        item.title = QStringLiteral("Title %1").arg(i);
        if (full) {
            item.author = QStringLiteral("Author %1").arg(i);
        }
        item.isFinished = full;
        batch.append(item);
    }
    return batch;
}

} // namespace quire::testing
