#include "QuireApp/QuireApp/ProgramStart.h"

#include "images/StandInFonts.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/Theme/InterfaceFonts.h"
#include "sources/ServiceEndpoints.h"

#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>

#include <cstdlib>

namespace quire {

namespace {

// Before the first window: the toolkit does not look again.
const Theme &lookOfLastRun(Theme &theme)
{
    QQuickStyle::setStyle(QStringLiteral("Basic")); // ours is drawn on the templates
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering); // crisper at 10 to 14 pixels
    StandInFonts::installAll();
    InterfaceFonts::readAhead();
    QuireApplication::restoreLook(theme);
    return theme;
}

} // namespace

ProgramStart::ProgramStart()
    : m_defaults(ServiceEndpoints::userSettingsFile())
    , m_theme(nullptr)
    , m_window(lookOfLastRun(m_theme), m_defaults.windowShape().value_or(WindowShape{}))
{
}

ProgramStart::~ProgramStart() = default;

int ProgramStart::run(const std::function<void(QuireApplication &)> &filled)
{
    m_window.afterFirstFrame([this, &filled] {
        m_application = std::make_unique<QuireApplication>(m_engine, m_theme);
        if (!m_application->openViews(m_window)) {
            QGuiApplication::exit(EXIT_FAILURE);
        } else if (filled) {
            filled(*m_application);
        }
    });
    m_window.present();
    QuireApplication::prepare(m_engine);
    const int status = QGuiApplication::exec();
    m_defaults.setWindowShape(m_window.shape());
    return status;
}

} // namespace quire
