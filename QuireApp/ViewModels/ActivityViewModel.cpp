#include "QuireApp/ViewModels/ActivityViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"

namespace quire {

namespace {

// A failing service's own page may be megabytes long; laying all of it out would
// hold the interface.
QString readable(const QString &text)
{
    constexpr qsizetype longest = 10'000;
    return text.size() > longest ? text.left(longest) + u'…' : text;
}

} // namespace

ActivityViewModel::ActivityViewModel(AppModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_model, &AppModel::isReadyChanged, this, &ActivityViewModel::workChanged);
    connect(&m_model, &AppModel::isWorkingChanged, this, &ActivityViewModel::workChanged);
    connect(&m_model, &AppModel::activityLabelChanged, this, &ActivityViewModel::workChanged);
    connect(&m_model, &AppModel::activeSidebarOperationChanged, this, &ActivityViewModel::workChanged);
    connect(&m_model, &AppModel::isSyncingAllChanged, this, &ActivityViewModel::workChanged);
    connect(&m_model, &AppModel::toastMessageChanged, this, &ActivityViewModel::toastChanged);
    connect(&m_model, &AppModel::noticeChanged, this, &ActivityViewModel::noticeChanged);
}

bool ActivityViewModel::isReady() const
{
    return m_model.isReady();
}

bool ActivityViewModel::canWork() const
{
    return m_model.isReady() && !m_model.isWorking();
}

bool ActivityViewModel::isSyncingAll() const
{
    return m_model.isSyncingAll();
}

QString ActivityViewModel::activityLabel() const
{
    return m_model.activityLabel();
}

bool ActivityViewModel::showsOverlay() const
{
    return m_model.isWorking() && !m_model.activeSidebarOperation() && m_model.isReady();
}

QString ActivityViewModel::toast() const
{
    return readable(m_model.toastMessage().value_or(QString()));
}

bool ActivityViewModel::hasNotice() const
{
    return m_model.notice().has_value();
}

QString ActivityViewModel::noticeTitle() const
{
    const auto &notice = m_model.notice();
    return notice ? notice->title : QString();
}

QString ActivityViewModel::noticeMessage() const
{
    const auto &notice = m_model.notice();
    return notice ? readable(notice->message) : QString();
}

void ActivityViewModel::dismissNotice()
{
    m_model.setNotice(std::nullopt);
}

void ActivityViewModel::synchronizeAll()
{
    detach(m_model.synchronizeAll());
}

} // namespace quire
