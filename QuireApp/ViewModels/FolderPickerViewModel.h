// The folder picker that Quire draws itself, for desktops that lend none: one
// question at a time, the folders to walk through, and the answer.
//
// Thread: interface thread; folders are read off it.

#pragma once

#include "core/Desktop.h"

#include <QCoroTask>

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace quire {

class FolderPickerViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString title READ title NOTIFY openChanged)
    Q_PROPERTY(QString message READ message NOTIFY openChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY openChanged)
    Q_PROPERTY(bool allowsNewFolders READ allowsNewFolders NOTIFY openChanged)

    Q_PROPERTY(QString folder READ folder NOTIFY folderChanged)
    Q_PROPERTY(QStringList folders READ folders NOTIFY folderChanged)
    // Why the last step led nowhere; empty when it led somewhere.
    Q_PROPERTY(QString trouble READ trouble NOTIFY troubleChanged)

public:
    using Answer = std::optional<QString>;

    explicit FolderPickerViewModel(QObject *parent = nullptr);
    ~FolderPickerViewModel() override; // a question that stands is answered with nothing

    // Opens the picker. The answer is the folder chosen, or nothing: when the
    // reader cancels, and at once while another question stands.
    QFuture<Answer> ask(const FolderQuestion &question);

    bool isOpen() const { return m_promise != nullptr; }
    QString title() const { return m_question.title; }
    QString message() const { return m_question.message; }
    QString prompt() const { return m_question.prompt.value_or(QStringLiteral("Choose")); }
    bool allowsNewFolders() const { return m_question.allowsNewFolders; }

    QString folder() const { return m_folder; } // the one shown, absolute
    QStringList folders() const { return m_folders; } // the names within, in the reader's order
    QString trouble() const { return m_trouble; }

    // The absolute path of a folder within the one shown.
    Q_INVOKABLE QString pathOf(const QString &name) const;

    // Shows another folder; what is none leaves the list and tells the trouble.
    Q_INVOKABLE void goTo(const QString &typed);
    Q_INVOKABLE void goUp();
    // Makes a folder in the one shown, and goes there.
    Q_INVOKABLE void makeFolder(const QString &name);

    // Answers with a folder, which must be there.
    Q_INVOKABLE void choose(const QString &typed);
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void openChanged();
    void folderChanged();
    void troubleChanged();

private:
    struct Listing;
    static Listing listing(const QString &folder);

    QCoro::Task<> show(QFuture<Listing> reading);
    QCoro::Task<> chooseIfThere(QString path);
    void setTrouble(const QString &trouble);
    void finish(const Answer &answer);

    FolderQuestion m_question;
    std::unique_ptr<QPromise<Answer>> m_promise; // while a question stands
    QString m_folder;
    QStringList m_folders;
    QString m_trouble;
    int m_step = 0; // of the walk; a slow answer to an earlier one is dropped
};

} // namespace quire
