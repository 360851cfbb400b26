#include "QuireApp/ViewModels/LibraryListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <random>

namespace quire {

namespace {

LibraryRow row(qint64 id, const QString &title = QStringLiteral("Title"))
{
    LibraryRow row;
    row.id = id;
    row.title = title;
    return row;
}

QList<LibraryRow> rows(std::initializer_list<qint64> ids)
{
    QList<LibraryRow> rows;
    for (const qint64 id : ids) {
        rows.append(row(id));
    }
    return rows;
}

QList<qint64> shown(const LibraryListModel &model)
{
    QList<qint64> ids;
    for (int i = 0; i < model.count(); ++i) {
        ids.append(model.data(model.index(i), LibraryListModel::RowIdRole).toLongLong());
    }
    return ids;
}

class LibraryListModelTest : public ::testing::Test
{
protected:
    LibraryListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(LibraryListModelTest, AReloadThatChangesNothingIsNotAnnounced)
{
    model.show(rows({1, 2, 3}));
    const QSignalSpy reset(&model, &LibraryListModel::modelReset);
    const QSignalSpy changed(&model, &LibraryListModel::dataChanged);
    const QSignalSpy inserted(&model, &LibraryListModel::rowsInserted);
    model.show(rows({1, 2, 3}));
    EXPECT_EQ(reset.size() + changed.size() + inserted.size(), 0);
}

TEST_F(LibraryListModelTest, AChangedTitleChangesItsRowAlone)
{
    model.show(rows({1, 2, 3}));
    const QSignalSpy reset(&model, &LibraryListModel::modelReset);
    const QSignalSpy changed(&model, &LibraryListModel::dataChanged);
    QList<LibraryRow> next = rows({1, 2, 3});
    next[1].title = QStringLiteral("Other");
    model.show(next);
    EXPECT_EQ(reset.size(), 0);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(model.data(model.index(1), LibraryListModel::AccessibleNameRole).toString(),
        QStringLiteral("View details for Other"));
}

TEST_F(LibraryListModelTest, ATitleThatGoesTakesOnlyItsRow)
{
    model.show(rows({1, 2, 3, 4}));
    const QSignalSpy removed(&model, &LibraryListModel::rowsRemoved);
    const QSignalSpy inserted(&model, &LibraryListModel::rowsInserted);
    model.show(rows({1, 3, 4}));
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed.at(0).at(1).toInt(), 1);
    EXPECT_EQ(removed.at(0).at(2).toInt(), 1);
    EXPECT_EQ(inserted.size(), 0);
    EXPECT_EQ(shown(model), (QList<qint64>{1, 3, 4}));
}

TEST_F(LibraryListModelTest, AnotherListIsShownByTheRowsThatAreThere)
{
    model.show(rows({1, 2, 3, 4}));
    const QSignalSpy reset(&model, &LibraryListModel::modelReset);
    const QSignalSpy removed(&model, &LibraryListModel::rowsRemoved);
    const QSignalSpy inserted(&model, &LibraryListModel::rowsInserted);
    const QSignalSpy changed(&model, &LibraryListModel::dataChanged);
    model.show(rows({5, 6, 7, 8}));
    EXPECT_EQ(shown(model), (QList<qint64>{5, 6, 7, 8}));
    EXPECT_EQ(reset.size() + removed.size() + inserted.size(), 0);
    ASSERT_EQ(changed.size(), 1) << "rows beside each other are told of at once";
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 0);
    EXPECT_EQ(changed.at(0).at(1).toModelIndex().row(), 3);

    model.show(rows({9, 7}));
    EXPECT_EQ(shown(model), (QList<qint64>{9, 7}));
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed.at(0).at(2).toInt() - removed.at(0).at(1).toInt() + 1, 2);
    EXPECT_EQ(reset.size() + inserted.size(), 0);
}

TEST_F(LibraryListModelTest, AnyListFollowsAnyOther)
{
    std::mt19937 random(20261121); // printed by the failure below
    for (int round = 0; round < 300; ++round) {
        QList<qint64> ids;
        QList<LibraryRow> next;
        for (qint64 id = 0; id < 12; ++id) {
            if (random() % 2 == 0) {
                ids.append(id);
            }
        }
        std::shuffle(ids.begin(), ids.end(), random);
        for (const qint64 id : ids) {
            next.append(row(id, QString::number(random() % 3)));
        }
        model.show(next);
        ASSERT_EQ(shown(model), ids) << "round " << round;
        for (int i = 0; i < model.count(); ++i) {
            ASSERT_EQ(model.data(model.index(i), LibraryListModel::TitleRole).toString(), next.at(i).title);
        }
    }
}

} // namespace

} // namespace quire
