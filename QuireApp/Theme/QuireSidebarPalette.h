// What the sidebar is painted with, by its appearance.
//
// Thread: plain values and pure functions, any thread.

#pragma once

#include "records/CustomAccentColor.h"
#include "records/Enumerations.h"

#include <QColor>

namespace quire {

struct QuireSidebarPalette
{
    QColor foreground;
    QColor muted;
    QColor searchForeground;
    QColor searchMuted;
    QColor searchFill;
    QColor border;
    QColor selection;
    QColor hover;

    // What stands before any setting is read.
    QuireSidebarPalette();

    bool operator==(const QuireSidebarPalette &) const = default;
};

// The sidebar's own surface: one colour, and over it a gradient from top to
// bottom (transparent but for glass).
struct SidebarBackground
{
    QColor base;
    QColor gradientTop;
    QColor gradientBottom;

    bool operator==(const SidebarBackground &) const = default;
};

QuireSidebarPalette sidebarPalette(SidebarAppearance appearance, const CustomAccentColor &accent);

SidebarBackground sidebarBackground(SidebarAppearance appearance, const CustomAccentColor &accent);

} // namespace quire
