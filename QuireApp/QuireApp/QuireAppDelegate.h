// QuireAppDelegate decides how the program ends. Every road out of it, the last
// window closing, the Quit command and the end of the session, asks here first;
// the program goes only when the library is closed.
//
// Thread: interface thread.

#pragma once

#include "core/AppModel.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

namespace quire {

enum class TerminateReply {
    Now,
    Later, // terminationMayProceed() follows
};

// What the close rule needs to know of a window.
struct WindowTraits
{
    enum class Kind {
        Ordinary,
        ColorPanel,
    };

    QString identifier;
    QString title;
    Kind kind = Kind::Ordinary;
};

// The main window by its identifier or, failing that, by its title.
bool isMainWindow(const WindowTraits &window);

// Whether a window goes when the main window does: the settings and the colour
// panel. Others, the help window among them, stay.
bool closesWithMainWindow(const WindowTraits &window);

class QuireAppDelegate final : public QObject
{
    Q_OBJECT

public:
    explicit QuireAppDelegate(QObject *parent = nullptr);

    // Assigned by the main window's start task; absent before, and again when
    // the model has gone.
    void setModel(AppModel *model) { m_model = model; }

    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    // Now when there is no model to close. Otherwise Later; the first such
    // answer starts the model's shutdown, the following do no new work.
    TerminateReply applicationShouldTerminate();

    bool terminationInProgress() const { return m_terminationInProgress; }

Q_SIGNALS:
    // The library is closed.
    void terminationMayProceed();

private:
    QCoro::Task<> shutDownModel();

    QPointer<AppModel> m_model;
    bool m_terminationInProgress = false;
};

} // namespace quire
