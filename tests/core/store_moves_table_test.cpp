// The working database: opened, never created; the table Moves and its lookup.
#include <gtest/gtest.h>

#include "import/moves_table.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

using import::DatabaseError;
using import::WorkingDatabase;
using MovesTableTest = StoreTest;

TEST_F(MovesTableTest, OpeningNeedsAnExistingDatabaseWithTheTable) {
    // Not there (and not created), empty, not a database, without the table.
    const DatabaseError::Kind kinds[kSpoiledDatabases] = {
        DatabaseError::Kind::MissingDatabase, DatabaseError::Kind::MissingTable, DatabaseError::Kind::MissingDatabase,
        DatabaseError::Kind::MissingTable};
    for (int k = 0; k < kSpoiledDatabases; ++k) {
        SpoilDatabase(k);
        WorkingDatabase db;
        try {
            db.Open(DbPath());
            ADD_FAILURE() << "opened " << k;
        } catch (const DatabaseError& e) {
            EXPECT_EQ(e.kind(), kinds[k]) << k;
        }
        EXPECT_FALSE(db.IsOpen());
        EXPECT_EQ(fs::exists(DbPath()), k != 0) << k;
    }
    // A schema that can't be read, or is no SQL, makes no database.
    std::string error;
    EXPECT_FALSE(import::CreateDatabaseFromSchema(dir / "x.mdb", dir / "missing.sql", &error));
    EXPECT_NE(error.find("missing.sql"), std::string::npos);
    WriteFile(dir / "bad.sql", "CREATE TABLE (");
    EXPECT_FALSE(import::CreateDatabaseFromSchema(dir / "y.mdb", dir / "bad.sql", &error));
    EXPECT_FALSE(fs::exists(dir / "y.mdb"));
}

TEST_F(MovesTableTest, LookupSeesRecordsOfTheOpenTransactionAndCloseKeepsThem) {
    {
        WorkingDatabase db;
        db.Open(DbPath());
        db.Begin();
        import::MovesTable table(db);
        table.Clear();
        const std::string layout(64, '0');
        table.Add({1, 0, "e4", "B", "", false, "", layout});
        table.Add({2, 1, "Nf3", "B", "", true, "", layout});
        // The parent counts, and so does the case of letters.
        EXPECT_EQ(std::to_string(table.Find(0, "e4")) + std::to_string(table.Find(1, "Nf3")) +
                      std::to_string(table.Find(0, "Nf3")) + std::to_string(table.Find(1, "nf3")) +
                      std::to_string(table.Find(1, "Nf3'")), "12000");
        // A second record with the same index is refused by the engine.
        try {
            table.Add({2, 1, "d4", "B", "", true, "", layout});
            ADD_FAILURE() << "duplicate index accepted";
        } catch (const DatabaseError& e) {
            EXPECT_EQ(e.kind(), DatabaseError::Kind::Engine);
            EXPECT_NE(e.number(), 0);
        }
        // Closed with the transaction still open: what was added stands.
    }
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 e4 ()", "2<1 Nf3 () *"}));
}

}  // namespace
}  // namespace vantrel::storetest
