// make_tessimo SCHEMA.sql OUT.mdb: creates the working database that the
// import opens, with the table Moves, from the schema script. Run by the
// build so that the program's directory holds Tessimo.mdb.
#include <cstdio>
#include <string>

#include "import/working_database.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_tessimo SCHEMA.sql OUT.mdb\n");
        return 2;
    }
    std::string error;
    if (!vantrel::import::CreateDatabaseFromSchema(argv[2], argv[1], &error)) {
        std::fprintf(stderr, "make_tessimo: %s\n", error.c_str());
        return 1;
    }
    return 0;
}
