#include "reliability/QuireHostIdentity.h"

#include <gtest/gtest.h>

#include <QSysInfo>

namespace quire {

namespace {

QuireHostIdentity named(const QString &hostName, const std::optional<QString> &computerName = std::nullopt)
{
    return QuireHostIdentity::make("machine", hostName, computerName);
}

TEST(QuireHostIdentity, TheMachinesIdentifierIsKeptAsItsDigestAlone)
{
    const auto identity = QuireHostIdentity::make("abc", QStringLiteral("Shelf"), std::nullopt);
    EXPECT_EQ(
        identity.current, QStringLiteral("platform:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    EXPECT_EQ(identity.hostName, QStringLiteral("Shelf"));
}

TEST(QuireHostIdentity, WithoutAnIdentifierTheLowerCasedHostNameServes)
{
    EXPECT_EQ(QuireHostIdentity::make({}, QStringLiteral("Shelf-2.Local"), std::nullopt).current,
        QStringLiteral("host:shelf-2.local"));
}

TEST(QuireHostIdentity, LegacyKeysComeFromTheHostNameAndTheComputersName)
{
    EXPECT_EQ(named(QStringLiteral("Corins-Shelf.local"), QStringLiteral("Corin’s Reading Room")).legacyKeys,
        QSet<QString>({QStringLiteral("corinsshelf"), QStringLiteral("corinsreadingroom")}));
    EXPECT_EQ(named(QStringLiteral("shelf")).legacyKeys, QSet<QString>({QStringLiteral("shelf")}));
}

TEST(QuireHostIdentity, TwoNamesThatMeanTheSameGiveOneKey)
{
    EXPECT_EQ(named(QStringLiteral("Corins-Shelf.local"), QStringLiteral("Corin’s Shelf")).legacyKeys,
        QSet<QString>({QStringLiteral("corinsshelf")}));
}

TEST(QuireHostIdentity, OnlyATrailingLocalIsCutAndInAnyCase)
{
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("SHELF.LOCAL")), QStringLiteral("shelf"));
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("a.local.example")), QStringLiteral("alocalexample"));
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("local")), QStringLiteral("local"));
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("a.local.local")), QStringLiteral("alocal"));
}

TEST(QuireHostIdentity, LettersMarksAndDigitsOfEveryScriptStay)
{
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("Bücher_Stube 2")), QStringLiteral("bücherstube2"));
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("书房-٣")), QStringLiteral("书房٣"));
    EXPECT_EQ(QuireHostIdentity::legacyKey(QStringLiteral("e\u0301tage\U0001F4DA\U00010400")),
        QStringLiteral("e\u0301tage\U00010428"));
}

TEST(QuireHostIdentity, ANameWithoutLettersIsNoKey)
{
    EXPECT_TRUE(named(QStringLiteral("---"), QStringLiteral(".local")).legacyKeys.isEmpty());
    EXPECT_TRUE(named(QString(), QString()).legacyKeys.isEmpty());
}

TEST(QuireHostIdentity, ThisMachineIsAskedOncePerProcess)
{
    const QuireHostIdentity &identity = QuireHostIdentity::ofThisMachine();
    EXPECT_EQ(&identity, &QuireHostIdentity::ofThisMachine());
    EXPECT_EQ(identity.hostName, QSysInfo::machineHostName());
    EXPECT_TRUE(identity.legacyKeys.contains(QuireHostIdentity::legacyKey(identity.hostName)));

    const QByteArray machineID = QSysInfo::machineUniqueId();
    EXPECT_EQ(identity.current, QuireHostIdentity::make(machineID, identity.hostName, std::nullopt).current);
    EXPECT_TRUE(machineID.isEmpty() || !identity.current.contains(QString::fromLatin1(machineID)));
}

} // namespace

} // namespace quire
