// A short list to choose from: sections, shelves, sorts, tabs of the settings.
// Each choice has the word it is known by, the title shown, a symbol, and the font
// family that it is shown in.
//
// Thread: interface thread.

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

struct Choice
{
    QString word;
    QString title;
    QString symbol; // empty for none
    QString family = {}; // empty for that of the interface

    bool operator==(const Choice &) const = default;
};

class ChoiceListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by a view model")

    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        WordRole = Qt::UserRole + 1,
        TitleRole,
        SymbolRole,
        FamilyRole,
    };
    Q_ENUM(Role)

    explicit ChoiceListModel(QObject *parent = nullptr);

    // Rows that stay keep their place, so that the view keeps its focus.
    void setChoices(const QList<Choice> &choices);
    const QList<Choice> &choices() const { return m_choices; }

    int count() const { return int(m_choices.size()); }

    // The title of a word; empty for a word that is not in the list.
    Q_INVOKABLE QString titleOf(const QString &word) const;
    // The font family of a word, likewise.
    Q_INVOKABLE QString familyOf(const QString &word) const;
    // The row of a word, -1 for one that is not in the list.
    Q_INVOKABLE int rowOf(const QString &word) const;
    Q_INVOKABLE QString wordAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    QList<Choice> m_choices;
};

} // namespace quire
