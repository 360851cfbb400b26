#include "concurrency/ThreadName.h"

#include <QByteArray>

#include <pthread.h>

namespace quire {

void nameThisThread(QStringView name)
{
    pthread_setname_np(pthread_self(), name.toUtf8().left(15).constData()); // a longer one is refused
}

} // namespace quire
