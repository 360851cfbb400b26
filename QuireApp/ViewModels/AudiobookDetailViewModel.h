// The audiobook whose detail view is open.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/TitleDetailViewModel.h"
#include "records/Audiobook.h"

namespace quire {

// Qualified, as the QML tools know the base class by its whole name only.
class AudiobookDetailViewModel : public quire::TitleDetailViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(QString narration READ narration NOTIFY factsChanged) // empty for none
    Q_PROPERTY(QString series READ series NOTIFY factsChanged) // empty for none

public:
    // model outlives this.
    explicit AudiobookDetailViewModel(AppModel &model, QObject *parent = nullptr);

    bool isOpen() const override;
    QString title() const override { return m_audiobook.title; }
    QString author() const override { return m_audiobook.author.value_or(QString()); }
    QString summary() const override;
    CoverSource cover() const override;
    QUrl link() const override;
    QString narration() const;
    QString series() const;

    void close() override;

protected:
    QCoro::Task<bool> store(double rating, QString state, QString notes) override;

private:
    void follow();

    Audiobook m_audiobook; // the one shown last
    bool m_wasOpen = false;
};

} // namespace quire
