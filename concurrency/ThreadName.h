// Names for the threads that live long, so that a debugger and the system's own
// tools tell them apart.

#pragma once

#include <QStringView>

namespace quire {

// Names the calling thread. The system keeps the first 15 bytes.
void nameThisThread(QStringView name);

} // namespace quire
