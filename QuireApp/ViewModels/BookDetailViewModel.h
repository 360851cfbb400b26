// The book whose detail view is open.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/TitleDetailViewModel.h"
#include "records/Book.h"

namespace quire {

// Qualified, as the QML tools know the base class by its whole name only.
class BookDetailViewModel : public quire::TitleDetailViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(QString metadata READ metadata NOTIFY factsChanged) // empty for none
    Q_PROPERTY(bool isHidden READ isHidden NOTIFY factsChanged)

public:
    // model outlives this.
    explicit BookDetailViewModel(AppModel &model, QObject *parent = nullptr);

    bool isOpen() const override;
    QString title() const override { return m_book.title; }
    QString author() const override { return m_book.author; }
    QString summary() const override;
    CoverSource cover() const override;
    QUrl link() const override;
    QString metadata() const;
    bool isHidden() const { return m_book.isHidden; }

    void close() override;

    // Hides the book, or restores it; the view closes once that is done.
    Q_INVOKABLE void toggleHidden();

protected:
    QCoro::Task<bool> store(double rating, QString state, QString notes) override;

private:
    void follow();

    Book m_book; // the one shown last
    bool m_wasOpen = false;
};

} // namespace quire
