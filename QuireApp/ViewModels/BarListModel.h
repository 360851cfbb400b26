// The bars of a chart, with an axis of whole numbers whose top and lines are round.
//
// Thread: interface thread.

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quire {

struct Bar
{
    QString label;
    qint64 count = 0;
    QString accessibleName;

    bool operator==(const Bar &) const = default;
};

class BarListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by a view model")

    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // From 0 to the top: the values at which the axis has a line.
    Q_PROPERTY(QList<double> ticks READ ticks NOTIFY ticksChanged)

public:
    enum Role {
        LabelRole = Qt::UserRole + 1,
        CountRole,
        ShareRole, // of the axis' height, 0 to 1
        AccessibleNameRole,
    };
    Q_ENUM(Role)

    explicit BarListModel(QObject *parent = nullptr);

    void show(const QList<Bar> &bars);

    int count() const { return int(m_bars.size()); }
    const QList<double> &ticks() const { return m_ticks; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    void ticksChanged();

private:
    QList<Bar> m_bars;
    QList<double> m_ticks;
};

// 0, then at most five multiples of 1, 2 or 5 times a power of ten, the last of
// which is not below `highest`. At least 0 and 1.
QList<double> axisTicks(qint64 highest);

} // namespace quire
