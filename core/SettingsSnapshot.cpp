#include "core/SettingsSnapshot.h"

#include "persistence/AppDirectories.h"
#include "records/Text.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace quire {

namespace {

constexpr qint64 longestBackupInterval = 365; // days
constexpr double minutesPerDay = 1440;

// The text under one key, read as what the snapshot wants of it.
class StoredText
{
public:
    StoredText(const SettingsMap &values, QStringView key)
    {
        const auto found = values.constFind(key.toString());
        if (found != values.constEnd()) {
            m_text = *found;
        }
    }

    const std::optional<QString> &optional() const { return m_text; }
    QString text() const { return m_text.value_or(QString()); }
    std::optional<QString> nonEmpty() const { return Text::nonEmptyValue(m_text); }
    bool isUnlessZero() const { return m_text != QStringLiteral("0"); }
    bool isOne() const { return m_text == QStringLiteral("1"); }

    std::optional<qint64> integer() const { return m_text ? Text::decimalInteger(*m_text) : std::nullopt; }

    std::optional<double> real() const
    {
        bool ok = false;
        const double value = text().toDouble(&ok);
        return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
    }

    template<typename Enumeration>
    Enumeration choice(Enumeration otherwise) const
    {
        return fromRawValue<Enumeration>(text()).value_or(otherwise);
    }

private:
    std::optional<QString> m_text;
};

std::optional<CustomAccentColor> customAccentColor(const SettingsMap &values)
{
    const auto red = StoredText(values, u"customAccentRed").real();
    const auto green = StoredText(values, u"customAccentGreen").real();
    const auto blue = StoredText(values, u"customAccentBlue").real();
    if (!red || !green || !blue) {
        return std::nullopt;
    }
    return CustomAccentColor{*red, *green, *blue};
}

} // namespace

SettingsSnapshot makeSettingsSnapshot(const SettingsMap &values, const QString &databaseLocation)
{
    const auto stored = [&values](QStringView key) { return StoredText(values, key); };

    SettingsSnapshot snapshot;
    snapshot.goodreadsUserID = stored(u"goodreadsUserId").text();
    snapshot.goodreadsRSSKeySet = stored(u"goodreadsRssKey").nonEmpty().has_value();
    snapshot.netlifyTokenSet = stored(u"netlifyToken").nonEmpty().has_value();
    snapshot.hasNetlifyToken = snapshot.netlifyTokenSet;
    snapshot.netlifySiteURL = stored(u"netlifySiteURL").text();
    snapshot.localPublishPath = stored(u"localPublishPath").text();
    snapshot.backupPath = stored(u"backupPath").nonEmpty().value_or(AppDirectories::defaultBackupDirectory());
    snapshot.databaseFolderPath = QFileInfo(databaseLocation).path();
    snapshot.publishIntervalMinutes
        = stored(u"publishIntervalMinutes").integer().value_or(snapshot.publishIntervalMinutes);
    snapshot.backupIntervalDays = backupIntervalDays(values);
    snapshot.maximumBackupFiles = stored(u"maximumBackupFiles").integer().value_or(snapshot.maximumBackupFiles);
    snapshot.showBooksSection = stored(u"showBooksSection").isUnlessZero();
    snapshot.showAudioSection = stored(u"showAudioSection").isUnlessZero();
    snapshot.automaticGoodreadsSync = stored(u"automaticGoodreadsSync").isUnlessZero();
    snapshot.automaticAudibleSync = stored(u"automaticAudibleSync").isUnlessZero();
    snapshot.audibleLibraryPath = stored(u"audibleLibraryPath").text();
    snapshot.automaticPublishing = stored(u"automaticPublishing").isOne();
    snapshot.sidebarAppearance = stored(u"sidebarAppearance").choice(snapshot.sidebarAppearance);
    snapshot.interfaceFont = stored(u"interfaceFont").choice(snapshot.interfaceFont);
    snapshot.accentColor = storedAccentColorChoice(stored(u"accentColor").optional());
    snapshot.usesCustomAccentColor = stored(u"usesCustomAccentColor").isOne();
    snapshot.customAccentColor = customAccentColor(values);
    snapshot.goodreadsLastSync = stored(u"goodreadsLastSync").nonEmpty();
    snapshot.audibleLastSync = stored(u"audibleLastSync").nonEmpty();
    snapshot.publishLastRun = stored(u"publishLastRun").nonEmpty();
    snapshot.localLastPublish = stored(u"localLastPublish").nonEmpty();
    snapshot.onlineLastPublish = stored(u"onlineLastPublish").nonEmpty();
    return snapshot;
}

qint64 backupIntervalDays(const SettingsMap &values)
{
    if (const auto days = StoredText(values, u"backupIntervalDays").integer()) {
        return std::clamp<qint64>(*days, 1, longestBackupInterval);
    }
    const auto minutes = StoredText(values, u"backupIntervalMinutes").integer();
    if (!minutes) {
        return 1;
    }
    const double days = std::ceil(double(*minutes) / minutesPerDay);
    return qint64(std::clamp(days, 1.0, double(longestBackupInterval)));
}

} // namespace quire
