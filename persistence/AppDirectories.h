// Where Quire keeps its files. The places are looked up anew at every call, as
// the environment may point them elsewhere.
//
// Thread: any.

#pragma once

#include <QString>

namespace quire::AppDirectories {

// The program's folder in the reader's data directory, absolute; named by the
// build, "Quire" unless a development build keeps its data apart. May not exist.
QString supportDirectory();

// The folder of the program that Quire follows, beside the other. May not exist.
QString legacyBooksSupportDirectory();

// Where backups go unless the reader names another folder.
QString defaultBackupDirectory();

} // namespace quire::AppDirectories
