// What the reader changes of a title that is in the library.

#include "core/AppModelAssign.h"
#include "core/ToastTimes.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

QCoro::Task<bool> AppModel::saveBook(qint64 id, double rating, QString shelf, QString notes)
{
    const auto saving = finishSaving(m_store->updateBook(id, rating, shelf, notes), LibraryTab::Books);
    co_return co_await saving;
}

QCoro::Task<bool> AppModel::saveAudiobook(qint64 id, double rating, QString status, QString notes)
{
    const auto saving = finishSaving(m_store->updateAudiobook(id, rating, status, notes), LibraryTab::Audio);
    co_return co_await saving;
}

QCoro::Task<bool> AppModel::finishSaving(QFuture<void> storing, LibraryTab tab)
{
    const QPointer self(this);
    const bool isBook = tab == LibraryTab::Books;
    std::optional<QString> failure;
    try {
        co_await storing;
        if (!self) {
            co_return true;
        }
        const auto loading = reload();
        co_await loading;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self) {
        co_return false;
    }
    if (failure) {
        setNotice(AppNotice::error(
            isBook ? QStringLiteral("Title Could Not Be Updated") : QStringLiteral("Audio Title Could Not Be Updated"),
            *failure));
        co_return false;
    }
    if (isBook) {
        setSelectedBook(std::nullopt);
    } else {
        setSelectedAudiobook(std::nullopt);
    }
    showToast(isBook ? QStringLiteral("Title updated") : QStringLiteral("Audio title updated"), ToastTimes::success);
    co_return true;
}

} // namespace quire
