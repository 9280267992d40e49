// The working database: opened, never created; the table Moves and its lookup.
#include <gtest/gtest.h>

#include "import/moves_table.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

using import::DatabaseError;
using import::MoveRow;
using import::MovesTable;
using import::WorkingDatabase;

DatabaseError::Kind OpenFailure(const std::string& path) {
    WorkingDatabase db;
    try {
        db.Open(path);
    } catch (const DatabaseError& e) {
        EXPECT_FALSE(db.IsOpen());
        return e.kind();
    }
    ADD_FAILURE() << "opened " << path;
    return DatabaseError::Kind::Engine;
}

TEST(MovesTableTest, OpeningNeedsAnExistingDatabaseWithTheTable) {
    TempDir dir;
    const std::string path = dir / "Tessimo.mdb";
    EXPECT_EQ(OpenFailure(path), DatabaseError::Kind::MissingDatabase);
    EXPECT_FALSE(fs::exists(path));

    WriteFile(path, "garbage that is no database at all, and long enough to have a header");
    EXPECT_EQ(OpenFailure(path), DatabaseError::Kind::MissingDatabase);

    fs::remove(path);
    Db::Create(path, "CREATE TABLE Other (x INTEGER)");
    EXPECT_EQ(OpenFailure(path), DatabaseError::Kind::MissingTable);

    std::string error;
    ASSERT_TRUE(import::CreateDatabaseFromSchema(path, VANTREL_SCHEMA, &error)) << error;  // replaces the file
    WorkingDatabase db;
    EXPECT_NO_THROW(db.Open(path));
    EXPECT_TRUE(db.IsOpen());
}

TEST(MovesTableTest, LookupSeesRecordsOfTheOpenTransactionAndCloseKeepsThem) {
    TempDir dir;
    const std::string path = dir / "Tessimo.mdb";
    ASSERT_TRUE(import::CreateDatabaseFromSchema(path, VANTREL_SCHEMA));
    {
        WorkingDatabase db;
        db.Open(path);
        db.Begin();
        MovesTable table(db);
        table.Clear();
        const std::string layout(64, '0');
        MoveRow row;
        row.book = "B";
        row.layout = layout;
        row.index = 1;
        row.move = "e4";
        table.Add(row);
        row.index = 2;
        row.parent = 1;
        row.move = "Nf3";
        row.newBranch = true;
        table.Add(row);

        EXPECT_EQ(table.Find(0, "e4"), 1);
        EXPECT_EQ(table.Find(1, "Nf3"), 2);
        EXPECT_EQ(table.Find(0, "Nf3"), 0);  // the parent counts
        EXPECT_EQ(table.Find(1, "nf3"), 0);  // and so does the case of letters
        EXPECT_EQ(table.Find(1, "Nf3'"), 0);

        // A second record with the same index is refused by the engine.
        row.move = "d4";
        try {
            table.Add(row);
            ADD_FAILURE() << "duplicate index accepted";
        } catch (const DatabaseError& e) {
            EXPECT_EQ(e.kind(), DatabaseError::Kind::Engine);
            EXPECT_NE(e.number(), 0);
        }
        // Closed with the transaction still open: what was added stands.
    }
    const auto rows = Db(path).Rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].move, "Nf3");
    EXPECT_EQ(rows[1].newBranch, -1);
    EXPECT_EQ(rows[0].newBranch, 0);
}

TEST(MovesTableTest, SchemaThatCannotBeReadIsReported) {
    TempDir dir;
    std::string error;
    EXPECT_FALSE(import::CreateDatabaseFromSchema(dir / "x.mdb", dir / "missing.sql", &error));
    EXPECT_NE(error.find("missing.sql"), std::string::npos);

    WriteFile(dir / "bad.sql", "CREATE TABLE (");
    EXPECT_FALSE(import::CreateDatabaseFromSchema(dir / "y.mdb", dir / "bad.sql", &error));
    EXPECT_FALSE(fs::exists(dir / "y.mdb"));
}

}  // namespace
}  // namespace vantrel::storetest
