// Where the outside services live. The real addresses, unless the group
// [endpoints] of the per-user settings file names others: tests and the demo
// point the program at stand-ins that way.
//
// Thread: a plain value.

#pragma once

#include <QString>
#include <QUrl>

namespace quire {

// Each field is a scheme and an authority, without a path. A field is empty
// when its override could not be read: a request to it then fails as an
// invalid URL instead of reaching the real service behind the tester's back.
struct ServiceEndpoints
{
    QUrl goodreads; // feed and book pages
    QUrl audibleAPI; // catalogue search
    QUrl audibleWeb; // product pages
    QUrl openLibrary; // book search
    QUrl openLibraryCovers; // cover images
    QUrl appleBooks; // cover search
    QUrl netlify; // publishing
    QUrl update; // version manifest
    QUrl help; // help pages

    // The real services.
    static ServiceEndpoints standard();

    // The real services with the overrides of `settingsFile`, an INI file that
    // need not exist.
    static ServiceEndpoints read(const QString &settingsFile = userSettingsFile());

    // Absolute path of the per-user settings file, existing or not.
    static QString userSettingsFile();

    bool operator==(const ServiceEndpoints &) const = default;
};

} // namespace quire
