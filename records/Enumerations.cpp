#include "records/Enumerations.h"

#include <utility>

namespace quire {

namespace {

template<typename Enumeration>
using Words = std::pair<Enumeration, QStringView>;

constexpr std::array tabWords{
    Words<LibraryTab>{LibraryTab::Books, u"books"},
    Words<LibraryTab>{LibraryTab::Insights, u"insights"},
    Words<LibraryTab>{LibraryTab::Audio, u"audio"},
};

constexpr std::array sortWords{
    Words<LibrarySort>{LibrarySort::Recent, u"recent"},
    Words<LibrarySort>{LibrarySort::Title, u"title"},
    Words<LibrarySort>{LibrarySort::Rating, u"rating"},
};

constexpr std::array artworkWords{
    Words<ArtworkKind>{ArtworkKind::Book, u"book"},
    Words<ArtworkKind>{ArtworkKind::Audiobook, u"audiobook"},
};

constexpr std::array shelfWords{
    Words<LibraryShelf>{LibraryShelf::Read, u"read"},
    Words<LibraryShelf>{LibraryShelf::DidNotFinish, u"did-not-finish"},
    Words<LibraryShelf>{LibraryShelf::ToRead, u"to-read"},
    Words<LibraryShelf>{LibraryShelf::Active, u"active"},
    Words<LibraryShelf>{LibraryShelf::Hidden, u"hidden"},
    Words<LibraryShelf>{LibraryShelf::All, u"all"},
};

constexpr std::array sidebarWords{
    Words<SidebarAppearance>{SidebarAppearance::Snow, u"snow"},
    Words<SidebarAppearance>{SidebarAppearance::Fjord, u"fjord"},
    Words<SidebarAppearance>{SidebarAppearance::Pine, u"pine"},
    Words<SidebarAppearance>{SidebarAppearance::Cabin, u"cabin"},
    Words<SidebarAppearance>{SidebarAppearance::Glass, u"glass"},
};

constexpr std::array accentWords{
    Words<AccentColorChoice>{AccentColorChoice::Snow, u"snow"},
    Words<AccentColorChoice>{AccentColorChoice::Fjord, u"fjord"},
    Words<AccentColorChoice>{AccentColorChoice::Pine, u"pine"},
    Words<AccentColorChoice>{AccentColorChoice::Cabin, u"cabin"},
};

constexpr std::array fontWords{
    Words<InterfaceFontChoice>{InterfaceFontChoice::System, u"system"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::AvenirNext, u"avenirNext"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::HelveticaNeue, u"helveticaNeue"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Charter, u"charter"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Georgia, u"georgia"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Baskerville, u"baskerville"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::GillSans, u"gillSans"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Futura, u"futura"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Optima, u"optima"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Palatino, u"palatino"},
};

constexpr std::array fontLabels{
    Words<InterfaceFontChoice>{InterfaceFontChoice::System, u"System"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::AvenirNext, u"Avenir Next"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::HelveticaNeue, u"Helvetica Neue"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Charter, u"Charter"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Georgia, u"Georgia"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Baskerville, u"Baskerville"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::GillSans, u"Gill Sans"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Futura, u"Futura"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Optima, u"Optima"},
    Words<InterfaceFontChoice>{InterfaceFontChoice::Palatino, u"Palatino"},
};

template<typename Table, typename Enumeration>
QString wordOf(const Table &table, Enumeration value)
{
    for (const auto &[candidate, word] : table) {
        if (candidate == value) {
            return word.toString();
        }
    }
    Q_UNREACHABLE();
}

template<typename Enumeration, typename Table>
std::optional<Enumeration> caseOf(const Table &table, QStringView text)
{
    for (const auto &[candidate, word] : table) {
        if (word == text) {
            return candidate;
        }
    }
    return std::nullopt;
}

} // namespace

QString rawValue(LibraryTab tab)
{
    return wordOf(tabWords, tab);
}

QString rawValue(LibrarySort sort)
{
    return wordOf(sortWords, sort);
}

QString rawValue(ArtworkKind kind)
{
    return wordOf(artworkWords, kind);
}

QString rawValue(LibraryShelf shelf)
{
    return wordOf(shelfWords, shelf);
}

QString rawValue(SidebarAppearance appearance)
{
    return wordOf(sidebarWords, appearance);
}

QString rawValue(AccentColorChoice choice)
{
    return wordOf(accentWords, choice);
}

QString rawValue(InterfaceFontChoice choice)
{
    return wordOf(fontWords, choice);
}

template<>
std::optional<LibraryTab> fromRawValue(QStringView word)
{
    return caseOf<LibraryTab>(tabWords, word);
}

template<>
std::optional<LibrarySort> fromRawValue(QStringView word)
{
    return caseOf<LibrarySort>(sortWords, word);
}

template<>
std::optional<ArtworkKind> fromRawValue(QStringView word)
{
    return caseOf<ArtworkKind>(artworkWords, word);
}

template<>
std::optional<LibraryShelf> fromRawValue(QStringView word)
{
    return caseOf<LibraryShelf>(shelfWords, word);
}

template<>
std::optional<SidebarAppearance> fromRawValue(QStringView word)
{
    return caseOf<SidebarAppearance>(sidebarWords, word);
}

template<>
std::optional<AccentColorChoice> fromRawValue(QStringView word)
{
    return caseOf<AccentColorChoice>(accentWords, word);
}

template<>
std::optional<InterfaceFontChoice> fromRawValue(QStringView word)
{
    return caseOf<InterfaceFontChoice>(fontWords, word);
}

std::optional<QString> databaseValue(LibraryShelf shelf, LibraryTab tab)
{
    switch (shelf) {
    case LibraryShelf::Hidden:
    case LibraryShelf::All:
        return std::nullopt;
    case LibraryShelf::Active:
        return tab == LibraryTab::Audio ? QStringLiteral("reading") : QStringLiteral("currently-reading");
    case LibraryShelf::Read:
    case LibraryShelf::DidNotFinish:
    case LibraryShelf::ToRead:
        return rawValue(shelf);
    }
    Q_UNREACHABLE();
}

QString label(LibraryShelf shelf, LibraryTab tab)
{
    const bool audio = tab == LibraryTab::Audio;
    switch (shelf) {
    case LibraryShelf::Read:
        return QStringLiteral("Read");
    case LibraryShelf::DidNotFinish:
        return QStringLiteral("Did Not Finish");
    case LibraryShelf::ToRead:
        return QStringLiteral("Want to Read");
    case LibraryShelf::Active:
        return audio ? QStringLiteral("Currently Listening") : QStringLiteral("Currently Reading");
    case LibraryShelf::Hidden:
        return QStringLiteral("Hidden");
    case LibraryShelf::All:
        return audio ? QStringLiteral("All Audio") : QStringLiteral("All Titles");
    }
    Q_UNREACHABLE();
}

QString label(InterfaceFontChoice choice)
{
    return wordOf(fontLabels, choice);
}

bool usesDarkForeground(SidebarAppearance appearance)
{
    return appearance == SidebarAppearance::Fjord || appearance == SidebarAppearance::Pine
        || appearance == SidebarAppearance::Cabin;
}

AccentColorChoice storedAccentColorChoice(const std::optional<QString> &stored)
{
    if (!stored) {
        return AccentColorChoice::Fjord;
    }
    if (const auto choice = fromRawValue<AccentColorChoice>(*stored)) {
        return *choice;
    }
    const QString older = stored->toLower();
    for (const QStringView warm : {u"red", u"coral", u"orange", u"gold", u"pink"}) {
        if (older == warm) {
            return AccentColorChoice::Cabin;
        }
    }
    return older == u"green" ? AccentColorChoice::Pine : AccentColorChoice::Fjord;
}

} // namespace quire
