// The program's own start, telling its moments: the first frame, the first with
// the titles and the first with all covers of the page, and when the library was
// ready. Ends when it was, or at the first frame with covers of a library that
// does not open.

#include "bench/Moments.h"
#include "images/PictureMemory.h"
#include "QuireApp/Items/CoverPicture.h"
#include "QuireApp/QuireApp/ProgramStart.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/ViewModels/ShellViewModel.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace quire {

namespace {

// The database and nothing else of the library's folder.
bool hasDatabaseOpen()
{
    const auto descriptors = QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::System | QDir::Files);
    return std::any_of(descriptors.begin(), descriptors.end(),
        [](const QFileInfo &descriptor) { return descriptor.symLinkTarget().endsWith(u"/quire.db"); });
}

struct Covers
{
    int shown = 0;
    int missing = 0;
};

void count(const QQuickItem &item, Covers &covers)
{
    if (!item.isVisible()) {
        return;
    }
    if (const auto *cover = qobject_cast<const CoverPicture *>(&item)) {
        ++(cover->hasImage() ? covers.shown : covers.missing);
    }
    const auto children = item.childItems();
    for (const QQuickItem *child : children) {
        count(*child, covers);
    }
}

class Observer : public QObject
{
public:
    explicit Observer(QQuickWindow &window)
        : m_window(window)
    {
        connect(&window, &QQuickWindow::frameSwapped, this, &Observer::frameShown);
    }

    void observe(QuireApplication &application)
    {
        m_application = &application;
        m_shell = &application.shell();
        connect(m_shell->activity(), &ActivityViewModel::workChanged, this, &Observer::lookAtLibrary);
    }

private:
    void frameShown()
    {
        tellOnce(m_toldFrame, "frame");
        if (!m_shell) {
            return;
        }
        tellOnce(m_toldViews, "frame-of-views");
        if (m_shell->library()->isEmpty() || m_toldCovers) {
            return;
        }
        if (!m_toldTitles) {
            tellMoment(hasDatabaseOpen() ? "titles-while-open" : "titles-before-open");
        }
        tellOnce(m_toldTitles, m_shell->activity()->isReady() ? "titles-of-library" : "titles-of-cache");
        Covers covers;
        count(*m_window.contentItem(), covers);
        if (covers.shown > 0 && covers.missing == 0) {
            tellOnce(m_toldCovers, "covers");
            end();
        }
    }

    void lookAtLibrary()
    {
        if (m_shell->activity()->isReady()) {
            tellOnce(m_toldReady, "ready");
            end();
        }
    }

    void end()
    {
        if ((m_toldReady || m_shell->activity()->hasNotice()) && m_toldCovers) {
            m_application->quit();
        }
    }

    static void tellOnce(bool &told, const char *name)
    {
        if (!told) {
            tellMoment(name);
        }
        told = true;
    }

    QQuickWindow &m_window;
    ShellViewModel *m_shell = nullptr; // both null until there are views
    QuireApplication *m_application = nullptr;
    bool m_toldFrame = false;
    bool m_toldViews = false;
    bool m_toldTitles = false;
    bool m_toldCovers = false;
    bool m_toldReady = false;
};

} // namespace

} // namespace quire

// As the program's.
int main(int argc, char *argv[])
{
    quire::tellMoment("main");
    quire::returnPictureMemory();
    QGuiApplication::setApplicationName(QStringLiteral("Quire"));
    const QGuiApplication application(argc, argv);
    quire::tellMoment("toolkit");

    quire::ProgramStart start;
    quire::Observer observer(start.window());
    return start.run([&observer](quire::QuireApplication &program) {
        quire::tellMoment("views");
        observer.observe(program);
    });
}
