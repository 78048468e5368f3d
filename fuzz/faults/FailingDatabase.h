#pragma once

namespace varnith::test {

// Puts a layer between SQLite and the files of all connections that are opened from now on. Its calls are
// those of Call::Database, under the names of SQLite's methods, and return the fault's error, a result code
// of SQLite.
void UseFailingDatabase();

}  // namespace varnith::test
