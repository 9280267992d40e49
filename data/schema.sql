-- Tessimo.mdb: the working database of an import.
--
-- The table Moves is scratch space. BuildTree empties it at the start of
-- every import and adds one record for each move that the tree doesn't have
-- yet; WriteLibrary then copies it, in ascending "index" order, into a
-- library file. Nothing else reads it.
--
-- "index" doubles as the row id, so the writer's pass in index order needs no
-- sort. The only lookup is by ("parent", "move"), which has its own index.

-- Pages of 16K: an import writes hundreds of thousands of short records in
-- one go, and the next one frees them all. Larger pages cost more work in
-- each insert (a longer search in each page, more bytes moved), smaller ones
-- a deeper tree.
PRAGMA page_size = 16384;

CREATE TABLE Moves (
    "index"       INTEGER PRIMARY KEY,  -- node number, 1, 2, 3, ... in order of adding
    "parent"      INTEGER,              -- "index" of the parent; 0 for a first move
    "move"        TEXT,                 -- the move as the resolver left it
    "book"        TEXT,                 -- the library's name
    "description" TEXT,                 -- the move, or "move: game name"
    "new_branch"  INTEGER,              -- -1 on the first node that a game added, else 0
    "remarks"     TEXT,                 -- the move's comment (may be NULL or empty)
    "BoardLayout" TEXT                  -- the 64-character position after the move
);

CREATE INDEX MovesParentMove ON Moves ("parent", "move");
