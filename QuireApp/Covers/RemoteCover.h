// A cover that a view knows by its address alone: `source` holds it as soon as
// it has come. RemoteCoverImage.qml shows it.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Covers/CoverSource.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

#include <stop_token>

namespace quire {

class RemoteCover : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

    // Empty for no cover.
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(quire::CoverSource source READ source NOTIFY sourceChanged)

public:
    explicit RemoteCover(QObject *parent = nullptr);
    ~RemoteCover() override;

    const QUrl &url() const { return m_url; }
    void setUrl(const QUrl &url);
    const CoverSource &source() const { return m_source; }

    void classBegin() override { }
    void componentComplete() override;

Q_SIGNALS:
    void urlChanged();
    void sourceChanged();

private:
    void load();
    void setSource(const CoverSource &source);

    QUrl m_url;
    CoverSource m_source;
    bool m_isComplete = false; // only then it belongs to an engine
    std::stop_source m_loading;
};

} // namespace quire
