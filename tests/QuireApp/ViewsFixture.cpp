#include "ViewsFixture.h"

#include "testing/Await.h"

#include <QBuffer>
#include <QDir>
#include <QImage>

namespace quire {

using testing::await;

namespace {

QByteArray plainPicture(const QColor &color)
{
    QImage image(20, 30, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

} // namespace

ViewsFixture::ViewsFixture()
{
    for (QUrl ServiceEndpoints::*service : {&ServiceEndpoints::goodreads, &ServiceEndpoints::audibleAPI,
             &ServiceEndpoints::audibleWeb, &ServiceEndpoints::openLibrary, &ServiceEndpoints::openLibraryCovers,
             &ServiceEndpoints::appleBooks, &ServiceEndpoints::netlify, &ServiceEndpoints::update}) {
        m_endpoints.*service = m_covers.origin();
    }
    m_covers.route(u"/page", testing::LoopbackReply::ok("<!DOCTYPE html><html></html>", "image/png"));
    m_library.open();
    m_library.close();
    const auto add = [this](const QString &title, const char *shelf, int hidden) {
        m_library.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, hidden, cover_data)"
                          " VALUES (?, ?, '', ?, ?, x'00')", // no picture, and none is drawn

            {title, title, QString::fromLatin1(shelf), hidden});
    };
    for (int number = 1; number <= 38; ++number) {
        add(QStringLiteral("Book %1").arg(number, 2, 10, QLatin1Char('0')), "read", number == 38 ? 1 : 0);
    }
    add(QStringLiteral("Wanted"), "to-read", 0);
    m_library.execute("INSERT INTO settings (key, value) VALUES ('selectedTab', 'books')");
    m_model = std::make_unique<AppModel>(std::make_unique<LibraryStore>(m_library.clock(), m_library.folder()),
        std::nullopt, AppModelDependencies{m_library.clock(), m_network, m_desktop, m_endpoints});
    m_shell = std::make_unique<ShellViewModel>(*m_model, m_library.clock(), m_alerts, m_folderPicker,
        ProgramFacts{QStringLiteral("1.2"), QStringLiteral("34"), QUrl(QStringLiteral("https://help.test")),
            QStringLiteral("maker@help.test")});
    await(m_model->start());
    QDir(m_folders.path()).mkdir(QStringLiteral("first"));
    QDir(m_folders.path()).mkdir(QStringLiteral("second"));
}

ViewsFixture::~ViewsFixture()
{
    m_shell.reset();
    await(m_model->shutdown());
}

void ViewsFixture::showToast(const QString &text)
{
    m_model->showToast(text, std::chrono::milliseconds(3200));
    if (text.isEmpty()) {
        m_library.clock().advance(std::chrono::seconds(4));
    }
}

void ViewsFixture::serveBooks(int count)
{
    QByteArrayList books;
    for (int number = 1; number <= count; ++number) {
        books.append(QStringLiteral(R"({"key": "/works/OL%1W", "title": "Found %1"})").arg(number).toUtf8());
    }
    m_covers.route(u"/search.json", testing::LoopbackReply::ok(R"({"docs": [)" + books.join(',') + "]}"));
}

void ViewsFixture::showNotice(const QString &title, const QString &message)
{
    m_model->setNotice(AppNotice::error(title, message));
}

void ViewsFixture::ask(const QString &title, const QString &message, const QStringList &buttons)
{
    m_pressed.append(m_alerts.show({.title = title, .message = message, .buttons = buttons}));
}

QVariantList ViewsFixture::pressed() const
{
    QVariantList places;
    for (const QFuture<int> &answer : m_pressed) {
        places.append(answer.isFinished() ? answer.result() : -1);
    }
    return places;
}

void ViewsFixture::store(const QString &key, const QString &value)
{
    m_library.execute("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", {key, value});
    await(m_model->reload());
}

QString ViewsFixture::stored(const QString &key) const
{
    return m_library.scalar("SELECT value FROM settings WHERE key = ?", {key}).optionalString().value_or(QString());
}

void ViewsFixture::pass(int milliseconds)
{
    m_library.clock().advance(std::chrono::milliseconds(milliseconds));
}

void ViewsFixture::settle()
{
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
        await(m_model->reload()); // behind what was handed to the library before
    }
}

QString ViewsFixture::selectedTitle() const
{
    return m_model->selectedBook() ? m_model->selectedBook()->title : QString();
}

QString ViewsFixture::folderAnswer() const
{
    return m_folderAnswer.isFinished() ? m_folderAnswer.result().value_or(QString()) : QString();
}

void ViewsFixture::askForFolder(bool allowsNewFolders)
{
    m_folderAnswer = m_folderPicker.ask({QStringLiteral("Which folder?"), QStringLiteral("It will hold the books."),
        QStringLiteral("Take It"), m_folders.path(), allowsNewFolders});
}

CoverSource ViewsFixture::cover(const QColor &color) const
{
    return {color.name(), CoverBytes(plainPicture(color))};
}

QUrl ViewsFixture::coverAddress(const QColor &color)
{
    const QString path = u'/' + color.name().mid(1);
    m_covers.route(path, testing::LoopbackReply::ok(plainPicture(color), "text/plain")); // its name is not asked
    return m_covers.url(path);
}

} // namespace quire
