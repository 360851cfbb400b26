// The lists that the reader chooses the look of the window from, in the order
// of their enumerations; each word is the stored one.
//
// Thread: interface thread, once an application object exists.

#pragma once

#include "QuireApp/ViewModels/ChoiceListModel.h"

#include <QList>

namespace quire::AppearanceChoices {

QList<Choice> sidebars();
QList<Choice> fonts(); // each with its own family
QList<Choice> accents();

} // namespace quire::AppearanceChoices
