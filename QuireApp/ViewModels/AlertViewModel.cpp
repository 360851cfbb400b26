#include "QuireApp/ViewModels/AlertViewModel.h"

namespace quire {

AlertViewModel::AlertViewModel(QObject *parent)
    : QObject(parent)
{
}

AlertViewModel::~AlertViewModel()
{
    while (isOpen()) {
        putAway();
    }
}

QFuture<int> AlertViewModel::show(DesktopAlert alert)
{
    Standing standing{std::move(alert), {}};
    standing.answer.start();
    QFuture<int> answer = standing.answer.future();
    m_standing.push_back(std::move(standing));
    if (m_standing.size() == 1) {
        Q_EMIT changed();
    }
    return answer;
}

QString AlertViewModel::title() const
{
    return isOpen() ? m_standing.front().alert.title : QString();
}

QString AlertViewModel::message() const
{
    return isOpen() ? m_standing.front().alert.message : QString();
}

QStringList AlertViewModel::buttons() const
{
    return isOpen() ? m_standing.front().alert.buttons : QStringList();
}

void AlertViewModel::press(int button)
{
    if (!isOpen()) {
        return;
    }
    Standing answered = std::move(m_standing.front());
    m_standing.pop_front();
    Q_EMIT changed();
    answered.answer.addResult(button);
    answered.answer.finish();
}

void AlertViewModel::putAway()
{
    press(int(buttons().size()) - 1);
}

} // namespace quire
