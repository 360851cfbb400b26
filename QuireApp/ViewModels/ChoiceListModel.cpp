#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <algorithm>

namespace quire {

ChoiceListModel::ChoiceListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void ChoiceListModel::setChoices(const QList<Choice> &choices)
{
    const qsizetype before = m_choices.size();
    const qsizetype after = choices.size();
    if (after < before) {
        beginRemoveRows({}, int(after), int(before) - 1);
        m_choices.resize(after);
        endRemoveRows();
    }
    for (qsizetype row = 0; row < m_choices.size(); ++row) {
        if (m_choices.at(row) != choices.at(row)) {
            m_choices[row] = choices.at(row);
            Q_EMIT dataChanged(index(int(row)), index(int(row)));
        }
    }
    if (after > before) {
        beginInsertRows({}, int(before), int(after) - 1);
        m_choices = choices;
        endInsertRows();
    }
    if (after != before) {
        Q_EMIT countChanged();
    }
}

QString ChoiceListModel::titleOf(const QString &word) const
{
    const int row = rowOf(word);
    return row < 0 ? QString() : m_choices.at(row).title;
}

QString ChoiceListModel::familyOf(const QString &word) const
{
    const int row = rowOf(word);
    return row < 0 ? QString() : m_choices.at(row).family;
}

int ChoiceListModel::rowOf(const QString &word) const
{
    const auto found = std::find_if(
        m_choices.begin(), m_choices.end(), [&word](const Choice &choice) { return choice.word == word; });
    return found == m_choices.end() ? -1 : int(found - m_choices.begin());
}

QString ChoiceListModel::wordAt(int row) const
{
    return row < 0 || row >= count() ? QString() : m_choices.at(row).word;
}

int ChoiceListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ChoiceListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Choice &choice = m_choices.at(index.row());
    switch (role) {
    case WordRole:
        return choice.word;
    case Qt::DisplayRole:
    case TitleRole:
        return choice.title;
    case SymbolRole:
        return choice.symbol;
    case FamilyRole:
        return choice.family;
    default:
        return {};
    }
}

QHash<int, QByteArray> ChoiceListModel::roleNames() const
{
    return {
        {WordRole, QByteArrayLiteral("word")},
        {TitleRole, QByteArrayLiteral("title")},
        {SymbolRole, QByteArrayLiteral("symbol")},
        {FamilyRole, QByteArrayLiteral("family")},
    };
}

} // namespace quire
