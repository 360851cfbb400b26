#include "faults/HostileRecords.h"

#include "faults/LockedLibrary.h"
#include "reliability/QuireHostIdentity.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

#include <limits>

#include <unistd.h>

namespace quire::testing {

namespace {

const QByteArray &oneOf(Torture &torture, const QList<QByteArray> &choice)
{
    return choice.at(torture.below(int(choice.size())));
}

QByteArray noise(Torture &torture, int size)
{
    QByteArray bytes(size, '\0');
    for (char &byte : bytes) {
        byte = char(torture.below(256));
    }
    return bytes;
}

QString name(Torture &torture)
{
    static const QStringList names{QString(), QStringLiteral("Corins-Shelf.local"), QStringLiteral("CORINS SHELF"),
        QStringLiteral("corins-shelf-2"), QStringLiteral("书房"), QStringLiteral("a\"b\\c\n\t%1"),
        QString(QChar(u'\0')), QStringLiteral("\u202Erevo\u200D\U0001F4DA"), QString(50'000, u'x')};
    return names.at(torture.below(int(names.size())));
}

// A record that is whole, however odd.
QuireLibraryLeaseOwner owner(Torture &torture)
{
    static const QString own = QuireHostIdentity::make(hostileRecordMachine, {}, std::nullopt).current;
    static const QList<pid_t> processes{
        ::getpid(), endedProcess(), 0, 1, -1, std::numeric_limits<qint32>::max(), std::numeric_limits<qint32>::min()};
    static const QList<Instant> moments{Instant(), distantPast,
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::milliseconds(1),
        std::chrono::sys_days(std::chrono::year(9999) / 12 / 31)};
    const std::optional<QString> hostIDs[] = {std::nullopt, own, name(torture)};
    QUuid token;
    do {
        token = QUuid::fromRfc4122(noise(torture, 16));
    } while (token.isNull());
    return {token, processes.at(torture.below(int(processes.size()))), name(torture), hostIDs[torture.below(3)],
        moments.at(torture.below(int(moments.size())))};
}

// A value that spoils the field; what each field takes is told by its name.
QByteArray wrongValue(Torture &torture, const QString &key)
{
    QList<QByteArray> wrong{"true", "[]", "{}", "[\"x\"]", "{\"x\":1}"};
    if (key == u"token") {
        wrong << "null"
              << "7"
              << R"("")"
              << R"("{67C8770B-44F1-410A-AB9A-F9B5446F13EE}")"
              << R"("67C8770B-44F1-410A-AB9A-F9B5446F13EE ")"
              << R"("67C8770B-44F1-410A-AB9A")"
              << R"("67C8770B44F1410AAB9AF9B5446F13EE")"
              << R"("67C8770B-44F1-410A-AB9A-F9B5446F13EZ")"
              << R"("67C8770B-44F1-410A-AB9A-F9B5446F13E١")";
    } else if (key == u"processID") {
        wrong << "null"
              << "\"1\""
              << "0.5"
              << "2147483648"
              << "-2147483649"
              << "1e18"
              << "1e300";
    } else if (key == u"hostName") {
        wrong << "null"
              << "7"
              << "0.5";
    } else if (key == u"hostID") {
        wrong << "7"
              << "0.5";
    } else {
        wrong << "null"
              << "\"\""
              << "\"817387200\""
              << "\"2026-11-21T12:00:00Z\""
              << "NaN"
              << "Infinity"
              << "1e999";
    }
    return oneOf(torture, wrong);
}

// The record's object with the field's value replaced by plain JSON text.
QByteArray withValue(QJsonObject object, const QString &key, const QByteArray &value)
{
    const QString mark = QStringLiteral("here it goes");
    object[key] = mark;
    return QJsonDocument(object).toJson(QJsonDocument::Compact).replace("\"" + mark.toUtf8() + "\"", value);
}

QByteArray flipped(Torture &torture, QByteArray bytes)
{
    for (int flips = 1 + torture.below(8); flips > 0; --flips) {
        const auto at = torture.below(int(bytes.size()));
        bytes[at] = char(bytes.at(at) ^ (1 << torture.below(8)));
    }
    return bytes;
}

QByteArray bomb(Torture &torture)
{
    const int depth = 2'000 + torture.below(30'000);
    return oneOf(torture,
        {QByteArray(depth, '['), QByteArray(R"({"token":)").repeated(depth / 10),
            QByteArray(depth, '[') + QByteArray(depth, ']'), R"({"hostName":")" + QByteArray(depth, '\\') + R"("})",
            QByteArray(int(QuireLibraryLeaseOwner::maximumSize) + depth, ' ')});
}

} // namespace

HostileRecord drawRecord(Torture &torture)
{
    const QuireLibraryLeaseOwner whole = owner(torture);
    const QByteArray bytes = whole.encoded();
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const QStringList keys{QStringLiteral("token"), QStringLiteral("processID"), QStringLiteral("hostName"),
        QStringLiteral("createdAt"), QStringLiteral("hostID")};
    const QString &key = keys.at(torture.below(5));
    const int cut = torture.below(int(bytes.size()));
    const std::optional<QuireLibraryLeaseOwner> nothing;

    switch (torture.below(11)) {
    case 0:
        return {QStringLiteral("whole"), bytes, whole};
    case 1:
        return {QStringLiteral("indented"), QJsonDocument(object).toJson(), whole};
    case 2: {
        QJsonObject more = object;
        more[QStringLiteral("zone")] = QJsonObject{{QStringLiteral("token"), 5}};
        return {QStringLiteral("with another key"), QJsonDocument(more).toJson(), whole};
    }
    case 3:
        return {QStringLiteral("cut"), bytes.first(cut), nothing};
    case 4: // as after a power cut
        return {QStringLiteral("cut, zeros to its length"), bytes.first(cut) + QByteArray(bytes.size() - cut, '\0'),
            nothing};
    case 5:
        return {QStringLiteral("noise"), noise(torture, 1 + torture.below(500)), nothing};
    case 6: {
        QJsonObject less = object;
        less.remove(key);
        QuireLibraryLeaseOwner older = whole;
        older.hostID.reset();
        return {QStringLiteral("without ") + key, QJsonDocument(less).toJson(),
            key == u"hostID" ? std::optional(older) : nothing};
    }
    case 7:
        return {QStringLiteral("wrong ") + key, withValue(object, key, wrongValue(torture, key)), nothing};
    case 8:
        return {QStringLiteral("bits flipped"), flipped(torture, bytes), std::nullopt};
    case 9:
        return {QStringLiteral("two in one"), bytes.first(cut) + owner(torture).encoded().mid(cut), std::nullopt};
    default:
        return {QStringLiteral("bomb"), bomb(torture), nothing};
    }
}

} // namespace quire::testing
