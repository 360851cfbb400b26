// A home of its own for a benchmark that runs the program: nothing of the
// reader's is read or written, and nobody outside is asked.
//
// Thread: interface thread, before the application object.

#pragma once

#include <QSize>
#include <QString>

namespace quire {

// The process, and those it starts, have their home in the folder at `home`.
void moveInto(const QString &home);

// Each title of the library there has a cover.
struct BenchLibrary
{
    int books = 0;
    int audiobooks = 0;
    QString selectedTab;
    QSize coverSize{600, 900}; // one in four is a square
};

// Makes the library of that home, with a hundred covers that differ.
void fillLibrary(const BenchLibrary &library);

} // namespace quire
