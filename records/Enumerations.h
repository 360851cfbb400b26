// The enumerations of the library. Each has a word that is its identity and
// its stored form; the order of the cases is the order of its lists.
//
// Thread: plain values and pure functions, any thread.

#pragma once

#include <QObject>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace quire {

Q_NAMESPACE

// The sections of the window.
enum class LibraryTab {
    Books,
    Insights,
    Audio,
};
Q_ENUM_NS(LibraryTab)

enum class LibrarySort {
    Recent,
    Title,
    Rating,
};
Q_ENUM_NS(LibrarySort)

enum class ArtworkKind {
    Book,
    Audiobook,
};
Q_ENUM_NS(ArtworkKind)

// A selection of the shelf filter, not the stored type: records keep the word.
enum class LibraryShelf {
    Read,
    DidNotFinish,
    ToRead,
    Active,
    Hidden,
    All,
};
Q_ENUM_NS(LibraryShelf)

enum class SidebarAppearance {
    Snow,
    Fjord,
    Pine,
    Cabin,
    Glass,
};
Q_ENUM_NS(SidebarAppearance)

enum class AccentColorChoice {
    Snow,
    Fjord,
    Pine,
    Cabin,
};
Q_ENUM_NS(AccentColorChoice)

enum class InterfaceFontChoice {
    System,
    AvenirNext,
    HelveticaNeue,
    Charter,
    Georgia,
    Baskerville,
    GillSans,
    Futura,
    Optima,
    Palatino,
};
Q_ENUM_NS(InterfaceFontChoice)

// Which sidebar action is running.
enum class SidebarOperation {
    GoodreadsSync,
    AudibleSync,
    LibraryUpdate,
};
Q_ENUM_NS(SidebarOperation)

inline constexpr std::array allLibraryTabs{LibraryTab::Books, LibraryTab::Insights, LibraryTab::Audio};
inline constexpr std::array allLibrarySorts{LibrarySort::Recent, LibrarySort::Title, LibrarySort::Rating};
inline constexpr std::array allLibraryShelves{LibraryShelf::Read, LibraryShelf::DidNotFinish, LibraryShelf::ToRead,
    LibraryShelf::Active, LibraryShelf::Hidden, LibraryShelf::All};
inline constexpr std::array allArtworkKinds{ArtworkKind::Book, ArtworkKind::Audiobook};
inline constexpr std::array allSidebarAppearances{SidebarAppearance::Snow, SidebarAppearance::Fjord,
    SidebarAppearance::Pine, SidebarAppearance::Cabin, SidebarAppearance::Glass};
inline constexpr std::array allAccentColorChoices{
    AccentColorChoice::Snow, AccentColorChoice::Fjord, AccentColorChoice::Pine, AccentColorChoice::Cabin};
inline constexpr std::array allInterfaceFontChoices{InterfaceFontChoice::System, InterfaceFontChoice::AvenirNext,
    InterfaceFontChoice::HelveticaNeue, InterfaceFontChoice::Charter, InterfaceFontChoice::Georgia,
    InterfaceFontChoice::Baskerville, InterfaceFontChoice::GillSans, InterfaceFontChoice::Futura,
    InterfaceFontChoice::Optima, InterfaceFontChoice::Palatino};

// The stored word of a case.
QString rawValue(LibraryTab tab);
QString rawValue(LibrarySort sort);
QString rawValue(ArtworkKind kind);
QString rawValue(LibraryShelf shelf);
QString rawValue(SidebarAppearance appearance);
QString rawValue(AccentColorChoice choice);
QString rawValue(InterfaceFontChoice choice);

// The case of a stored word, or nothing for any other text; exact, case and
// all. fromRawValue<LibraryTab>(word).
template<typename Enumeration>
std::optional<Enumeration> fromRawValue(QStringView word);
template<>
std::optional<LibraryTab> fromRawValue(QStringView word);
template<>
std::optional<LibrarySort> fromRawValue(QStringView word);
template<>
std::optional<ArtworkKind> fromRawValue(QStringView word);
template<>
std::optional<LibraryShelf> fromRawValue(QStringView word);
template<>
std::optional<SidebarAppearance> fromRawValue(QStringView word);
template<>
std::optional<AccentColorChoice> fromRawValue(QStringView word);
template<>
std::optional<InterfaceFontChoice> fromRawValue(QStringView word);

// The word that a record of `tab` stores for this shelf; nothing for Hidden
// and All, which filter by other means. Insights behaves as Books.
std::optional<QString> databaseValue(LibraryShelf shelf, LibraryTab tab);

// The shelf's name in the interface of `tab`.
QString label(LibraryShelf shelf, LibraryTab tab);

// The font family's name as the reader chooses it.
QString label(InterfaceFontChoice choice);

// True when the sidebar is dark and wants a light foreground.
bool usesDarkForeground(SidebarAppearance appearance);

// The accent of a stored text, names of earlier versions included. Never
// fails: what it does not know is Fjord.
AccentColorChoice storedAccentColorChoice(const std::optional<QString> &stored);

} // namespace quire
