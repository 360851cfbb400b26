// An application model over a real library in a folder of its own, with a
// Goodreads on loopback, a clock that stands still and a log of its own.
//
// Thread: the test's.

#pragma once

#include "core/AppModel.h"
#include "ScriptedDesktop.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/TestLibrary.h"

#include <gtest/gtest.h>

#include <memory>

namespace quire {

class ModelTest : public ::testing::Test
{
protected:
    // With an empty library that is closed again, and was backed up just now.
    ModelTest();
    ~ModelTest() override; // lets what was left suspended run out

    // A model that is not started. withSession: with a session record.
    void makeModel(bool withSession = false);

    // makeModel() and start(), until the schedules have come to rest.
    void startModel();

    // Rows, given to the library file before or behind the model's back. They
    // have a cover, so that the model has nothing to fetch or to draw for them.
    void addBook(const QString &title, const QString &shelf = QStringLiteral("read"));
    void addAudiobook(const QString &title, const QString &status = QStringLiteral("read"));
    void setStored(const QString &key, const QString &value);
    std::optional<QString> stored(const QString &key) const;

    // Makes the automatic sync and the Goodreads step of a full sync possible.
    void configureGoodreads();
    // What Goodreads answers to every request: a feed of these titles.
    void serveFeed(const QStringList &titles);

    // "job state attempt", one for each line of job history, in order: of all
    // jobs, of backups, of passes over the covers, and of all but those two,
    // since a start begins them in its own time.
    QStringList allHistory() const;
    QStringList backupHistory() const;
    QStringList artworkHistory() const;
    QStringList history() const;

    // Sleeps under way but for those of the schedules, which last days.
    std::size_t sleepers() const;
    // How long the last sleep was asked to be, but for those.
    std::chrono::nanoseconds lastPause() const;

    // Lines of the log without their dates, all that were written before.
    QStringList logLines();

    QStringList titlesShown() const; // of filteredBooks
    QString defaultsFile() const { return library.file(QStringLiteral("Quire.conf")); }
    QString sessionFile() const { return library.file(QStringLiteral("Session State.json")); }

    // Lets everything run that is due now.
    static void settle();

    testing::TestLibrary library{testing::TestLibrary::Start::Closed};
    testing::ManualClock &clock = library.clock();
    testing::LoopbackServer goodreads;
    testing::LoopbackServer services; // where covers are looked for
    QUrl netlifyOrigin = services.origin(); // set before makeModel()
    NetworkClient network;
    ScriptedDesktop desktop;
    std::unique_ptr<AppModel> model;

private:
    QStringList readLog() const;
};

} // namespace quire
