#include "persistence/database/DatabaseError.h"
#include "testing/Await.h"
#include "testing/TestLibrary.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

TEST(LibraryOpening, AFreshLibraryIsAtThePresentSchema)
{
    TestLibrary library;
    EXPECT_EQ(library.scalar("PRAGMA user_version").intValue(), 2);
    EXPECT_EQ(library.scalar("SELECT generation FROM library_metadata").intValue(), 0);
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('1', 'One')");
    EXPECT_EQ(library.scalar("SELECT generation FROM library_metadata").intValue(), 1);
}
