#include "QuireApp/Theme/Theme.h"
#include "ViewsFixture.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

#include <memory>

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(":/qt/qml"));
        m_theme.setAppearance(
            quire::AccentPalette::cabin, quire::SidebarAppearance::Pine, quire::InterfaceFontChoice::AvenirNext);
        quire::Theme::serve(*engine, m_theme);
        m_fixture = std::make_unique<quire::ViewsFixture>();
        quire::RemoteCoverLoader::serve(*engine, m_fixture->remoteCovers());
        engine->rootContext()->setContextProperty(QStringLiteral("fixture"), m_fixture.get());
    }

    // Before the application goes: a library needs its event loop to close.
    void cleanupTestCase() { m_fixture.reset(); }

private:
    quire::Theme m_theme{nullptr};
    std::unique_ptr<quire::ViewsFixture> m_fixture;
};

QUICK_TEST_MAIN_WITH_SETUP(views, Setup)
#include "tst_Views.moc"
