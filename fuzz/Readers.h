// The program's own readers, as the promises take them.
//
// Thread: any, one at a time.

#pragma once

#include "fuzz/Promises.h"

namespace quire::fuzz::readers {

promises::ReadFeed feed();
promises::ReadAudibleCatalogue audibleCatalogue();
promises::ReadBookCatalogue bookCatalogue();
promises::ReadHtml htmlText();
promises::ReadDate date();
promises::NetlifyReader netlifyAnswer();
promises::ReadManifest updateManifest();
promises::ReadAudibleRow audibleRow();
promises::FindAudiobook merge();
promises::LaunchCacheReader launchCache();
promises::CredentialFile credentials();
promises::ReadLocation locationRecord();
promises::UseLibrary databaseFile();

} // namespace quire::fuzz::readers
