#include "QuireApp/QuireApp/QuireAppDelegate.h"

#include "concurrency/Detach.h"

namespace quire {

bool isMainWindow(const WindowTraits &window)
{
    return window.identifier.toLower() == QLatin1String("main") || window.title == QLatin1String("Quire");
}

bool closesWithMainWindow(const WindowTraits &window)
{
    const QString settings = QStringLiteral("settings");
    return window.kind == WindowTraits::Kind::ColorPanel || window.identifier.toLower().contains(settings)
        || window.title.contains(settings, Qt::CaseInsensitive);
}

QuireAppDelegate::QuireAppDelegate(QObject *parent)
    : QObject(parent)
{
}

TerminateReply QuireAppDelegate::applicationShouldTerminate()
{
    if (!m_model) {
        return TerminateReply::Now;
    }
    if (!m_terminationInProgress) {
        m_terminationInProgress = true;
        detach(shutDownModel());
    }
    return TerminateReply::Later;
}

QCoro::Task<> QuireAppDelegate::shutDownModel()
{
    const QPointer<QuireAppDelegate> self(this);
    const auto closed = m_model->shutdown();
    co_await closed;
    if (self) {
        Q_EMIT terminationMayProceed();
    }
}

} // namespace quire
