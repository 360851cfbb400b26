#include "QuireApp/QuireApp/FileChooserPortal.h"

#include <QCoroDBusPendingCall>
#include <QCoroFuture>

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QUrl>
#include <QWindow>

#include <chrono>

namespace quire {

namespace {

constexpr QStringView service = u"org.freedesktop.portal.Desktop";
constexpr QStringView object = u"/org/freedesktop/portal/desktop";
constexpr QStringView chooser = u"org.freedesktop.portal.FileChooser";
constexpr QStringView request = u"org.freedesktop.portal.Request";

// From this version on it can be asked for folders.
constexpr uint folderVersion = 3;

// A desktop that starts its portal for this question may take a moment; one
// whose portal hangs must not keep the reader.
constexpr std::chrono::milliseconds patience(2500);

// How the portal is told over which window to open.
QString handleOf(const QWindow *window)
{
    return window && QGuiApplication::platformName() == u"xcb"
        ? QStringLiteral("x11:%1").arg(quint64(window->winId()), 0, 16)
        : QString();
}

QVariantMap optionsOf(const FolderQuestion &question, const QString &token)
{
    QVariantMap options{
        {QStringLiteral("handle_token"), token}, {QStringLiteral("modal"), true}, {QStringLiteral("directory"), true}};
    if (question.prompt) {
        options.insert(QStringLiteral("accept_label"), *question.prompt);
    }
    // Paths travel as bytes with a zero at their end.
    options.insert(QStringLiteral("current_folder"), QFile::encodeName(question.startFolder).append('\0'));
    return options;
}

} // namespace

FileChooserPortal::FileChooserPortal(QObject *parent)
    : QObject(parent)
    , m_bus(QDBusConnection::sessionBus())
{
}

FileChooserPortal::~FileChooserPortal()
{
    finish(std::nullopt);
}

QCoro::Task<FileChooserPortal::Answer> FileChooserPortal::chooseFolder(FolderQuestion question, const QWindow *parent)
{
    const QPointer self(this);
    const QString window = handleOf(parent);
    const auto looking = isThere();
    const bool isLent = co_await looking;
    if (!self || !isLent) {
        co_return Answer{};
    }
    if (m_promise) {
        co_return Answer{true, std::nullopt};
    }
    const QString token = QStringLiteral("quire%1").arg(++m_count);
    listen(token);
    auto answering = m_promise->future();
    auto call = QDBusMessage::createMethodCall(
        service.toString(), object.toString(), chooser.toString(), QStringLiteral("OpenFile"));
    call << window << question.title << optionsOf(question, token);
    const auto calling = m_bus.asyncCall(call);
    const QDBusMessage called = co_await calling;
    if (!self) {
        co_return Answer{};
    }
    if (called.type() == QDBusMessage::ErrorMessage) {
        finish(std::nullopt);
        co_return Answer{};
    }
    const auto folder = co_await answering;
    co_return Answer{true, folder};
}

QCoro::Task<bool> FileChooserPortal::isThere()
{
    if (!m_bus.isConnected()) {
        co_return false;
    }
    auto call = QDBusMessage::createMethodCall(service.toString(), object.toString(),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << chooser.toString() << QStringLiteral("version");
    const auto asking = m_bus.asyncCall(call, int(patience.count()));
    const QDBusMessage answer = co_await asking;
    const QVariantList values = answer.arguments();
    co_return answer.type() == QDBusMessage::ReplyMessage && !values.isEmpty()
        && values.first().value<QDBusVariant>().variant().toUInt() >= folderVersion;
}

void FileChooserPortal::listen(const QString &token)
{
    m_promise = std::make_unique<QPromise<std::optional<QString>>>();
    m_promise->start();
    QString sender = m_bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    m_request = QStringLiteral("%1/request/%2/%3").arg(object, sender, token);
    m_bus.connect(service.toString(), m_request, request.toString(), QStringLiteral("Response"), this,
        SLOT(respond(uint, QVariantMap)));
    m_life
        = std::make_unique<QDBusServiceWatcher>(service.toString(), m_bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(m_life.get(), &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish(std::nullopt); });
}

void FileChooserPortal::respond(uint outcome, const QVariantMap &results)
{
    const QStringList chosen = results.value(QStringLiteral("uris")).toStringList();
    const QUrl folder = chosen.isEmpty() ? QUrl() : QUrl(chosen.first());
    if (outcome == 0 && folder.isLocalFile()) {
        finish(folder.toLocalFile());
    } else {
        finish(std::nullopt);
    }
}

void FileChooserPortal::finish(const std::optional<QString> &folder)
{
    if (const auto promise = std::move(m_promise)) {
        m_bus.disconnect(service.toString(), m_request, request.toString(), QStringLiteral("Response"), this,
            SLOT(respond(uint, QVariantMap)));
        m_life.release()->deleteLater(); // it may be the one that called
        promise->addResult(folder);
        promise->finish();
    }
}

} // namespace quire
