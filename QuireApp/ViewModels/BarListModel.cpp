#include "QuireApp/ViewModels/BarListModel.h"

#include <algorithm>

namespace quire {

QList<double> axisTicks(qint64 highest)
{
    constexpr qint64 mostLines = 5;
    // The three steps of a power of ten, until the lines suffice.
    qint64 step = 1;
    for (qint64 power = 1; step * mostLines < highest; power *= 10) {
        for (const qint64 factor : {2, 5, 10}) {
            step = factor * power;
            if (step * mostLines >= highest) {
                break;
            }
        }
    }
    QList<double> ticks{0};
    do {
        ticks.append(ticks.last() + double(step));
    } while (ticks.last() < double(highest));
    return ticks;
}

BarListModel::BarListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    m_ticks = axisTicks(0);
}

void BarListModel::show(const QList<Bar> &bars)
{
    if (bars == m_bars) {
        return;
    }
    qint64 highest = 0;
    for (const Bar &bar : bars) {
        highest = std::max(highest, bar.count);
    }
    const bool hasOtherCount = bars.size() != m_bars.size();
    const QList<double> ticks = axisTicks(highest);
    const bool hasOtherTicks = ticks != m_ticks;
    if (hasOtherCount) {
        beginResetModel();
    }
    m_bars = bars;
    m_ticks = ticks;
    if (hasOtherCount) {
        endResetModel();
        Q_EMIT countChanged();
    } else {
        Q_EMIT dataChanged(index(0), index(count() - 1));
    }
    if (hasOtherTicks) {
        Q_EMIT ticksChanged();
    }
}

int BarListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant BarListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Bar &bar = m_bars.at(index.row());
    switch (role) {
    case LabelRole:
        return bar.label;
    case CountRole:
        return double(bar.count);
    case ShareRole:
        return double(bar.count) / m_ticks.last();
    case AccessibleNameRole:
        return bar.accessibleName;
    default:
        return {};
    }
}

QHash<int, QByteArray> BarListModel::roleNames() const
{
    return {
        {LabelRole, QByteArrayLiteral("label")},
        {CountRole, QByteArrayLiteral("bookCount")},
        {ShareRole, QByteArrayLiteral("share")},
        {AccessibleNameRole, QByteArrayLiteral("accessibleName")},
    };
}

} // namespace quire
