#include "QuireApp/ViewModels/HelpViewModel.h"

#include "concurrency/Detach.h"

#include <QCoroFuture>

#include <QPointer>
#include <QUrlQuery>

namespace quire {

namespace {

constexpr int writeButton = 1;

QString known(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("Unknown") : text;
}

} // namespace

HelpViewModel::HelpViewModel(ProgramFacts facts, AlertViewModel &alerts, QObject *parent)
    : QObject(parent)
    , m_facts(std::move(facts))
    , m_alerts(alerts)
{
}

QString HelpViewModel::versionDescription() const
{
    return QStringLiteral("Version %1 (%2)").arg(known(m_facts.version), known(m_facts.build));
}

QUrl HelpViewModel::helpPage() const
{
    QUrl page = m_facts.helpHost;
    page.setPath(QStringLiteral("/quire/help.html"));
    return page;
}

QUrl HelpViewModel::feedbackURL() const
{
    QUrl letter;
    letter.setScheme(QStringLiteral("mailto"));
    letter.setPath(m_facts.feedbackAddress);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"), QStringLiteral("Quire Feedback"));
    letter.setQuery(query);
    return letter;
}

void HelpViewModel::showQuireAboutDialog()
{
    detach(showAbout());
}

QCoro::Task<> HelpViewModel::showAbout()
{
    const QPointer self(this);
    const auto showing = m_alerts.show({QStringLiteral("Quire"),
        versionDescription() + QStringLiteral("\n\nYour personal, local-first reading library for macOS."),
        {QStringLiteral("OK"), QStringLiteral("Send Feedback…")}});
    const int pressed = co_await showing;
    if (self && pressed == writeButton) {
        Q_EMIT linkRequested(feedbackURL());
    }
}

} // namespace quire
