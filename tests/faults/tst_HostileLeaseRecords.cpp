// Owner records as a torn disk, a confused sync service or somebody with bad
// intent leaves them: no crash, and the answer that the rules give.

#include "faults/HostileRecords.h"
#include "faults/LockedLibrary.h"
#include "faults/Torture.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/QuireLibraryLease.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cerrno>
#include <csignal>

using namespace quire;
using namespace quire::testing;

namespace {

using namespace std::chrono_literals;

using Decoder = std::optional<QuireLibraryLeaseOwner> (*)(const QByteArray &);

// What `decode` gets wrong about the sample; empty when nothing.
QString judge(const HostileRecord &sample, Decoder decode)
{
    const auto owner = decode(sample.bytes);
    if (sample.expected && owner != *sample.expected) {
        return QStringLiteral("%1, %2: %3")
            .arg(sample.kind, owner ? u"read" : u"refused",
                QString::fromLatin1(sample.bytes.left(300).toPercentEncoding()));
    }
    // Whatever is read can be written and read again.
    if (owner && decode(owner->encoded()) != owner) {
        return QStringLiteral("%1: not the same when written again").arg(sample.kind);
    }
    return {};
}

// The control: takes what has the right keys, whatever stands there.
std::optional<QuireLibraryLeaseOwner> decodeTrustingly(const QByteArray &bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    if (object.isEmpty()) {
        return std::nullopt;
    }
    return QuireLibraryLeaseOwner{QUuid::fromString(object[u"token"].toString()), object[u"processID"].toInt(),
        object[u"hostName"].toString(),
        object.contains(u"hostID") ? std::optional(object[u"hostID"].toString()) : std::nullopt,
        Instant(std::chrono::milliseconds(qint64(object[u"createdAt"].toDouble(0) * 1'000)))};
}

// Whether the rules give a lock with this record away.
bool isAbandoned(
    const std::optional<QuireLibraryLeaseOwner> &owner, const QuireHostIdentity &host, std::chrono::seconds age)
{
    if (!owner) {
        return age > 2s;
    }
    const bool isThisMachine = owner->hostID ? *owner->hostID == host.current
                                             : host.legacyKeys.contains(QuireHostIdentity::legacyKey(owner->hostName));
    const bool isDead = ::kill(owner->processID, 0) == -1 && errno == ESRCH;
    return (isThisMachine && isDead) || age > 300s;
}

} // namespace

TEST(HostileLeaseRecords, AreReadWholeOrNotAtAll)
{
    Torture torture("R11", "Owner.json, torn or hostile: reading");
    for (int round = 0; round < Torture::scaled(5'000); ++round) {
        torture.addRounds();
        if (const QString finding = judge(drawRecord(torture), QuireLibraryLeaseOwner::decoded); !finding.isEmpty()) {
            torture.addFinding(finding);
        }
    }
}

TEST(HostileLeaseRecords, ADecoderThatTrustsIsSeen)
{
    Torture torture("R11 control", "Owner.json, read by one that trusts");
    int findings = 0;
    for (int round = 0; round < 2'000; ++round) {
        torture.addRounds();
        findings += !judge(drawRecord(torture), decodeTrustingly).isEmpty();
    }
    EXPECT_GT(findings, 100);
}

TEST(HostileLeaseRecords, LeadToWhatTheRulesSay)
{
    Torture torture("R11", "Owner.json, torn or hostile: acquiring");
    const LockedLibrary library;
    const ManualClock clock(std::chrono::floor<Instant::duration>(std::chrono::system_clock::now()));
    const auto host = QuireHostIdentity::make(hostileRecordMachine, QStringLiteral("Corins-Shelf.local"), std::nullopt);
    int taken = 0;
    for (int round = 0; round < Torture::scaled(2'000); ++round) {
        torture.addRounds();
        const HostileRecord sample = drawRecord(torture);
        // Away from the limits by more than a machine can stand still.
        constexpr std::array<std::chrono::seconds, 4> silences{-1h, 0s, 200s, 1h};
        const std::chrono::seconds silence = silences.at(std::size_t(torture.below(4)));
        library.clear();
        library.putRecord(sample.bytes, silence);

        auto stored = sample.expected ? *sample.expected : QuireLibraryLeaseOwner::decoded(sample.bytes);
        if (sample.bytes.size() > QuireLibraryLeaseOwner::maximumSize) {
            stored.reset();
        }
        const auto kept = library.holder();
        bool isTaken = true;
        {
            QuireLibraryLease lease(library.path(), clock, host, {.rounds = 2, .pause = 0us});
            try {
                lease.acquire();
            } catch (const DatabaseError &) {
                isTaken = false;
            }
            if (isTaken != isAbandoned(stored, host, silence)
                || (isTaken ? library.holder() != lease.owner().token : library.holder() != kept)) {
                torture.addFinding(QStringLiteral("%1, silent for %2 s, %3: %4")
                                       .arg(sample.kind)
                                       .arg(silence.count())
                                       .arg(isTaken ? u"taken" : u"left")
                                       .arg(QString::fromLatin1(sample.bytes.left(300).toPercentEncoding())));
            }
        }
        taken += isTaken;
        if (isTaken && !library.clear()) {
            torture.addFinding(QStringLiteral("something was left behind"));
        }
    }
    EXPECT_GT(taken, 0);
}
