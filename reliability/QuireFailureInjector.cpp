#include "reliability/QuireFailureInjector.h"

#include <QString>

#include <unistd.h>

namespace quire::QuireFailureInjector {

void checkpoint(QAnyStringView name)
{
    if (qgetenv("QUIRE_ENABLE_FAILURE_TESTS") != QByteArrayView("1")) {
        return;
    }
    if (!qEnvironmentVariableIsSet("QUIRE_FAILURE_POINT")
        || qEnvironmentVariable("QUIRE_FAILURE_POINT") != name.toString()) {
        return;
    }
    _exit(exitStatus);
}

} // namespace quire::QuireFailureInjector
