// Help, feedback and what is told about the program.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/AlertViewModel.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace quire {

// Where help is, and what runs.
struct ProgramFacts
{
    QString version; // empty: unknown
    QString build; // empty: unknown
    QUrl helpHost; // scheme and authority of the help pages
    QString feedbackAddress; // of mail
};

class HelpViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(QString versionDescription READ versionDescription CONSTANT)
    Q_PROPERTY(QUrl helpPage READ helpPage CONSTANT) // the complete help
    Q_PROPERTY(QUrl feedbackURL READ feedbackURL CONSTANT) // a letter to the maker

public:
    // alerts outlives this.
    HelpViewModel(ProgramFacts facts, AlertViewModel &alerts, QObject *parent = nullptr);

    // "Version 1.2 (34)"; a part that is not known is told so.
    QString versionDescription() const;
    QUrl helpPage() const;
    QUrl feedbackURL() const;

    // Tells about the program; linkRequested() follows where the reader then
    // wants to write.
    Q_INVOKABLE void showQuireAboutDialog();

Q_SIGNALS:
    void linkRequested(const QUrl &url);

private:
    QCoro::Task<> showAbout();

    ProgramFacts m_facts;
    AlertViewModel &m_alerts;
};

} // namespace quire
