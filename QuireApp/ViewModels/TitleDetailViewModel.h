// What the detail views of a book and of an audiobook have in common: the title
// that is shown, what the reader may change of it, and the saving of that. The
// changes live here as long as the view is open, and reach the library by
// save() alone.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Covers/CoverSource.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

#include <optional>

namespace quire {

class AppModel;
class Url;

class TitleDetailViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY workChanged) // a job runs; nothing can be saved

    // Facts. They stay after closing, for the view is still to be seen fading.
    Q_PROPERTY(QString title READ title NOTIFY factsChanged)
    Q_PROPERTY(QString author READ author NOTIFY factsChanged) // empty for none
    Q_PROPERTY(QString summary READ summary NOTIFY factsChanged) // empty for none
    Q_PROPERTY(quire::CoverSource cover READ cover NOTIFY factsChanged)
    Q_PROPERTY(QUrl link READ link NOTIFY factsChanged) // empty for none
    Q_PROPERTY(bool hasLink READ hasLink NOTIFY factsChanged)
    Q_PROPERTY(quire::ChoiceListModel *pills READ pills CONSTANT)

    // What the reader may change.
    Q_PROPERTY(quire::ChoiceListModel *states READ states CONSTANT)
    Q_PROPERTY(double rating MEMBER m_rating NOTIFY editsChanged) // 0 for none
    Q_PROPERTY(QString state MEMBER m_state NOTIFY editsChanged) // its word
    Q_PROPERTY(QString notes MEMBER m_notes NOTIFY editsChanged)

public:
    virtual bool isOpen() const = 0;
    virtual QString title() const = 0;
    virtual QString author() const = 0;
    virtual QString summary() const = 0;
    virtual CoverSource cover() const = 0;
    virtual QUrl link() const = 0;
    bool hasLink() const { return !link().isEmpty(); }
    bool isWorking() const;
    ChoiceListModel *pills() { return &m_pills; }
    ChoiceListModel *states() { return &m_states; }

    // Throws the changes away.
    Q_INVOKABLE virtual void close() = 0;

    // Stores the changes; the view closes once that is done. While one save is
    // under way another is none.
    Q_INVOKABLE void save();

Q_SIGNALS:
    void isOpenChanged();
    void workChanged();
    void factsChanged();
    void editsChanged();

protected:
    // model outlives this. states: what the reader may choose from.
    TitleDetailViewModel(AppModel &model, const QList<Choice> &states, QObject *parent);

    virtual QCoro::Task<bool> store(double rating, QString state, QString notes) = 0;

    // Another title was opened: its own values replace what was typed.
    void beginEdits(double rating, const QString &state, const QString &notes);
    void setPills(const QList<Choice> &pills) { m_pills.setChoices(pills); }

    // What a browser may be asked to open; a library can hold any address that
    // a feed gave it, and not every one is a page.
    static QUrl page(const std::optional<Url> &address);

    AppModel &m_model;

private:
    QCoro::Task<> finishSaving();

    ChoiceListModel m_states;
    ChoiceListModel m_pills;
    double m_rating = 0;
    QString m_state;
    QString m_notes;
    bool m_isSaving = false;
};

} // namespace quire
