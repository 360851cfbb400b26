#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quire {

namespace {

Choice choice(const char *word, const char *title)
{
    return {QString::fromLatin1(word), QString::fromLatin1(title), QString()};
}

TEST(ChoiceListModel, NewWordsForTheSameRowsKeepTheRows)
{
    ChoiceListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setChoices({choice("all", "All Titles"), choice("read", "Read")});
    const QSignalSpy removed(&model, &ChoiceListModel::rowsRemoved);
    const QSignalSpy reset(&model, &ChoiceListModel::modelReset);
    const QSignalSpy changed(&model, &ChoiceListModel::dataChanged);

    model.setChoices({choice("all", "All Audio"), choice("read", "Read")});

    EXPECT_EQ(removed.size() + reset.size(), 0);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(model.titleOf(QStringLiteral("all")), QStringLiteral("All Audio"));
}

TEST(ChoiceListModel, RowsComeAndGoAtTheEnd)
{
    ChoiceListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setChoices({choice("a", "A")});
    model.setChoices({choice("a", "A"), choice("b", "B"), choice("c", "C")});
    EXPECT_EQ(model.wordAt(2), QStringLiteral("c"));
    model.setChoices({choice("b", "B")});
    EXPECT_EQ(model.count(), 1);
    EXPECT_EQ(model.rowOf(QStringLiteral("b")), 0);
    EXPECT_EQ(model.rowOf(QStringLiteral("a")), -1);
    EXPECT_EQ(model.wordAt(1), QString());
    model.setChoices({});
    EXPECT_EQ(model.count(), 0);
}

} // namespace

} // namespace quire
