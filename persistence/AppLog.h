// AppLog is the program's one diagnostic channel: a small text file of dated
// lines, for what the reader is not told. The file is "quire.log" in the support
// directory, or where the environment variable QUIRE_LOG_PATH says; beyond
// 2,000,000 bytes it becomes "quire.previous.log" beside it, once.
//
// Thread: write() from any, also while the program ends; the file is touched
// only on the log's own serial queue.

#pragma once

#include <QString>

namespace quire::AppLog {

// Queues one line and returns at once. Never fails: a line that cannot be
// written is lost. message: as it stands, newlines included.
void write(const QString &message);

// The path of the log file as the environment has it now, absolute unless
// QUIRE_LOG_PATH is not. The file may not exist.
QString path();

} // namespace quire::AppLog
