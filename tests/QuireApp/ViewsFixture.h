// What the component tests find under the name `fixture`: the view models over
// an application model with a small library of its own.
//
// Thread: interface thread.

#pragma once

#include "core/AppModel.h"
#include "QuireApp/Covers/CoverSource.h"
#include "QuireApp/Covers/RemoteCoverLoader.h"
#include "QuireApp/ViewModels/ShellViewModel.h"
#include "ScriptedDesktop.h"
#include "sources/NetworkClient.h"
#include "testing/LoopbackServer.h"
#include "testing/TestLibrary.h"

#include <QColor>
#include <QFuture>
#include <QObject>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>

namespace quire {

class ViewsFixture : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quire::ShellViewModel *shell READ shell CONSTANT)
    Q_PROPERTY(QString folder READ folder CONSTANT) // with the folders "first" and "second"
    Q_PROPERTY(QVariantList pressed READ pressed) // places of buttons, -1 while an alert stands
    Q_PROPERTY(QString folderAnswer READ folderAnswer) // of the last question, empty for none

public:
    // With 37 read books, one of them hidden, and one wanted.
    ViewsFixture();
    ~ViewsFixture() override;

    ShellViewModel *shell() { return m_shell.get(); }

    Q_INVOKABLE void showToast(const QString &text);
    Q_INVOKABLE void showNotice(const QString &title, const QString &message);
    Q_INVOKABLE bool hasNotice() const { return m_model->notice().has_value(); }
    // Over the windows, as an update check would; each answer joins `pressed`.
    Q_INVOKABLE void ask(const QString &title, const QString &message, const QStringList &buttons);
    QVariantList pressed() const;
    Q_INVOKABLE QString selectedTitle() const;
    // As a publication notes it, or an earlier run did.
    Q_INVOKABLE void store(const QString &key, const QString &value);
    Q_INVOKABLE QString stored(const QString &key) const; // empty for none
    // Lets that much time go by.
    Q_INVOKABLE void pass(int milliseconds);
    // Lets everything be written that is on its way to the library.
    Q_INVOKABLE void settle();
    // What the reader will choose in the desktop's picker.
    Q_INVOKABLE void chooseNext(const QString &chosen) { m_desktop.answer = chosen; }
    QString folder() const { return m_folders.path(); }
    QString folderAnswer() const;
    // Opens the picker at `folder`.
    Q_INVOKABLE void askForFolder(bool allowsNewFolders);
    // A cover that is all of one colour.
    Q_INVOKABLE quire::CoverSource cover(const QColor &color) const;
    // The address of such a cover, and of a page that is none.
    Q_INVOKABLE QUrl coverAddress(const QColor &color);
    Q_INVOKABLE QUrl pageAddress() const { return m_covers.url(u"/page"); }
    Q_INVOKABLE int coverRequests() const { return int(m_covers.requests().size()); }
    // What the catalogue of books has, whatever is searched for.
    Q_INVOKABLE void serveBooks(int count);
    RemoteCoverLoader &remoteCovers() { return m_remoteCovers; }

private:
    testing::TestLibrary m_library{testing::TestLibrary::Start::Closed};
    testing::LoopbackServer m_covers;
    NetworkClient m_network;
    RemoteCoverLoader m_remoteCovers{m_network};
    ScriptedDesktop m_desktop;
    ServiceEndpoints m_endpoints = ServiceEndpoints::standard();
    QTemporaryDir m_folders;
    AlertViewModel m_alerts;
    QList<QFuture<int>> m_pressed;
    FolderPickerViewModel m_folderPicker;
    QFuture<FolderPickerViewModel::Answer> m_folderAnswer;
    std::unique_ptr<AppModel> m_model;
    std::unique_ptr<ShellViewModel> m_shell;
};

} // namespace quire
