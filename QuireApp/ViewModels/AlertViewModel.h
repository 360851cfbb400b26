// What the program tells over its window and wants an answer to: one alert at a
// time, the next when it is answered.
//
// Thread: interface thread.

#pragma once

#include "core/Desktop.h"

#include <QFuture>
#include <QObject>
#include <QPromise>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <deque>

namespace quire {

class AlertViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Handed to the views by the shell")

    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QStringList buttons READ buttons NOTIFY changed)

public:
    explicit AlertViewModel(QObject *parent = nullptr);
    ~AlertViewModel() override; // what stands is put away

    // Shows it now, or behind those that stand. The place of the button pressed,
    // from 0; the last one's when it was put away otherwise.
    QFuture<int> show(DesktopAlert alert);

    bool isOpen() const { return !m_standing.empty(); }
    QString title() const;
    QString message() const;
    QStringList buttons() const;

    // Answers the alert that is shown.
    Q_INVOKABLE void press(int button);
    Q_INVOKABLE void putAway();

Q_SIGNALS:
    void changed();

private:
    struct Standing
    {
        DesktopAlert alert;
        QPromise<int> answer;
    };

    std::deque<Standing> m_standing; // the first is shown
};

} // namespace quire
