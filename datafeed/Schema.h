// The tables of the datafeed database and the checks that a file is one of ours.
#pragma once

namespace datafeed {

class Database;

// Makes sure the open file is a datafeed database of a version this code reads, creating
// the tables in an empty file, and switches the connection to write-ahead logging.
// A file that holds anything else is refused untouched.
void PrepareSchema(Database& db);

}  // namespace datafeed
