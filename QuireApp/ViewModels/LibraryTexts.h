// The words around the library's numbers, and the choices that the shell
// offers. What a view shows is decided here and not in the view.
//
// Thread: pure functions, any thread.

#pragma once

#include "core/SettingsSnapshot.h"
#include "QuireApp/ViewModels/ChoiceListModel.h"
#include "records/Enumerations.h"

#include <QList>
#include <QLocale>
#include <QString>

#include <optional>

namespace quire::LibraryTexts {

// "1 title", "1,234 titles": digits grouped as the locale groups them.
QString titleCount(qint64 count, const QLocale &locale = QLocale::system());

// Digits grouped as the locale groups them.
QString count(qint64 count, const QLocale &locale = QLocale::system());

// "320 pages"; empty without a number.
QString pages(const std::optional<qint64> &count);

// "Coast Songs #2"; empty without a series.
QString series(const std::optional<QString> &title, const std::optional<qint64> &number);

// How a cover is named to a screen reader.
QString viewDetails(const QString &title);

// What the sidebar's search field asks for.
QString searchPrompt(LibraryTab tab);

// What the empty grid says, and its symbol.
QString emptyLabel(LibraryTab tab);
QString emptySymbol(LibraryTab tab);

// The sections that the sidebar offers, by what the settings show.
QList<Choice> sidebarTabs(const SettingsSnapshot &settings);

// Those that the menu offers: Insights always.
QList<Choice> menuTabs(const SettingsSnapshot &settings);

// The shelves that the sidebar offers for a tab.
QList<Choice> sidebarShelves(LibraryTab tab);

// Those that the menu offers: every one.
QList<Choice> menuShelves(LibraryTab tab);

QList<Choice> sorts();

// What a reader may say of a book and of an audiobook.
QList<Choice> readingStatuses();
QList<Choice> listeningStatuses();

// When the reading list was published last, as the foot of the settings tells
// it. publishLastRun: an instant as text.
QString lastUpdated(const std::optional<QString> &publishLastRun, const QLocale &locale = QLocale::system());

} // namespace quire::LibraryTexts
