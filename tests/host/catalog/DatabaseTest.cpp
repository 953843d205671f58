#include "host/catalog/Database.h"

#include "host/fixtures/Fixtures.h"

#include <VelkCommon/Files/FileUtils.h>

#include <sqlite3.h>

#include <limits>
#include <new>
#include <utility>

using testing::HasSubstr;
using VelkHost::Database;
using VelkHost::Statement;

namespace {

constexpr int maximumValueBytes = 1'000;

class DatabaseTest : public test::TestHost
{
protected:
    Database forReading() const
    {
        const long long size = FileUtils::fileSize(path_);
        return Database::openForReading(path_, static_cast<std::uint64_t>(size < 0 ? 0 : size), maximumValueBytes);
    }
    Database forWriting() const { return Database::openForWriting(path_); }

    /// A table with one row of every kind of value.
    void writeTable() const
    {
        Database database = forWriting();
        database.execute("CREATE TABLE t (number, word, bytes, none)");
        database.prepare("INSERT INTO t VALUES (?, ?, ?, ?)")
            .set(1, std::numeric_limits<std::int64_t>::min())
            .setText(2, "w\0rd")
            .setBlob(3, std::string_view("\0\1\2", 3))
            .setNull(4)
            .run();
        database.close();
    }

    /// Why the SQL cannot be run on a database that is read.
    std::string refusal(const std::string& sql) const
    {
        return test::reasonOf([&] {
            Database database = forReading();
            Statement statement = database.prepare(sql);
            while (statement.next()) {
            }
        });
    }

    fileString path_ = folder() / U"test.db";
};

/// While it lives, SQLite may not have more memory than it has.
class NoMoreMemory
{
public:
    NoMoreMemory() { sqlite3_hard_heap_limit64(1); }
    ~NoMoreMemory() { sqlite3_hard_heap_limit64(0); }
    NoMoreMemory(const NoMoreMemory&) = delete;
    NoMoreMemory& operator=(const NoMoreMemory&) = delete;
};

// ---- Values --------------------------------------------------------------------------------------

TEST_F(DatabaseTest, GivesBackTheValuesThatWereSet)
{
    writeTable();
    Database database = forReading();
    EXPECT_EQ(database.path(), path_);
    Statement statement = database.prepare("SELECT * FROM t");
    ASSERT_TRUE(statement.next());
    EXPECT_EQ(statement.integer(0), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(statement.bytes(1), "w");
    EXPECT_EQ(statement.bytes(2), std::string_view("\0\1\2", 3));
    EXPECT_EQ(statement.bytes(3), "");
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(statement.isInteger(column), column == 0);
        EXPECT_EQ(statement.text(column).has_value(), column == 1);
        EXPECT_EQ(statement.isNull(column), column == 3);
    }
    EXPECT_FALSE(statement.next());
    EXPECT_FALSE(statement.next()) << "it must not begin again";
}

TEST_F(DatabaseTest, TellsEmptyValuesFromNone)
{
    Database database = forWriting();
    database.execute("CREATE TABLE t (word, bytes)");
    Statement insert = database.prepare("INSERT INTO t VALUES (?, ?)");
    for (const std::string_view empty : {std::string_view(), std::string_view("")})
        insert.setText(1, empty).setBlob(2, empty).run();
    Statement read = database.prepare("SELECT typeof(word), typeof(bytes) FROM t");
    for (int row = 0; row < 2; ++row) {
        ASSERT_TRUE(read.next());
        EXPECT_EQ(read.bytes(0), "text");
        EXPECT_EQ(read.bytes(1), "blob");
    }
}

TEST_F(DatabaseTest, CanBeMoved)
{
    writeTable();
    Database first = forReading();
    Database second(std::move(first));
    EXPECT_TRUE(second.prepare("SELECT * FROM t").next());
}

// ---- Failures ------------------------------------------------------------------------------------

TEST_F(DatabaseTest, NamesAFileThatIsNotThere)
{
    EXPECT_EQ(test::reasonOf([&] { forReading(); }), "cannot be opened");
    path_ = folder() / U"none" / U"test.db";
    EXPECT_EQ(test::reasonOf([&] { forWriting(); }), "cannot be opened");
}

TEST_F(DatabaseTest, TellsWhatIsDamaged)
{
    writeTable();
    EXPECT_EQ(refusal("SELECT * FROM another"), "is damaged (no such table: another)");
    EXPECT_EQ(refusal("SELECT hex(zeroblob(1001))"), "is damaged (string or blob too big)");
    EXPECT_EQ(refusal("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n WHERE i < 0"),
              "is damaged (its tables never end)");
    const std::string bytes = test::readFile(path_);
    std::string damaged = bytes;
    damaged.replace(4'096, 8, 8, '\x7F');  // the head of the table's page
    test::writeFile(path_, damaged);
    EXPECT_EQ(refusal("SELECT * FROM t"), "is damaged (database disk image is malformed)");
    test::writeFile(path_, "no database" + std::string(4'096, 'x'));
    EXPECT_EQ(refusal("SELECT * FROM t"), "is damaged (file is not a database)");
}

TEST_F(DatabaseTest, TakesNoMoreThanTheDiskHolds)
{
    Database database = forWriting();
    database.execute("CREATE TABLE t (bytes); PRAGMA max_page_count = 3");
    Statement insert = database.prepare("INSERT INTO t VALUES (?)");
    const std::string bytes(100'000, 'x');
    EXPECT_EQ(test::reasonOf([&] { insert.setBlob(1, bytes).run(); }), "cannot be written: the disk is full");
}

TEST_F(DatabaseTest, IsNotChangedWhereItIsRead)
{
    writeTable();
    Database database = forReading();
    EXPECT_EQ(test::reasonOf([&] { database.execute("DELETE FROM t"); }), "attempt to write a readonly database");
}

TEST_F(DatabaseTest, BelongsToTheFirstWhoWritesIt)
{
    Database first = forWriting();
    first.execute("CREATE TABLE t (word)");
    EXPECT_EQ(test::reasonOf([&] { forWriting().execute("CREATE TABLE u (word)"); }), "database is locked");
}

TEST_F(DatabaseTest, KeepsAConditionOfItsTables)
{
    Database database = forWriting();
    database.execute("CREATE TABLE t (word UNIQUE)");
    Statement insert = database.prepare("INSERT INTO t VALUES (?)");
    insert.setText(1, "a").run();
    EXPECT_THAT(test::reasonOf([&] { insert.setText(1, "a").run(); }), HasSubstr("UNIQUE"));
}

TEST_F(DatabaseTest, RefusesParametersThatAreNotThere)
{
    Database database = forWriting();
    Statement statement = database.prepare("SELECT ?");
    const std::string reason = "column index out of range";
    EXPECT_EQ(test::reasonOf([&] { statement.set(2, 1); }), reason);
    EXPECT_EQ(test::reasonOf([&] { statement.setText(2, "a"); }), reason);
    EXPECT_EQ(test::reasonOf([&] { statement.setBlob(2, "a"); }), reason);
    EXPECT_EQ(test::reasonOf([&] { statement.setNull(2); }), reason);
}

TEST_F(DatabaseTest, IsNotClosedWhileAStatementNeedsIt)
{
    Database database = forWriting();
    {
        const Statement statement = database.prepare("SELECT 1");
        EXPECT_THAT(test::reasonOf([&] { database.close(); }), HasSubstr("unable to close"));
    }
    EXPECT_NO_THROW(database.close());
}

TEST_F(DatabaseTest, NeedsMemory)
{
    Database database = forWriting();
    const NoMoreMemory limit;
    EXPECT_THROW(forWriting(), std::bad_alloc);
    EXPECT_THROW(database.execute("CREATE TABLE t (word)"), std::bad_alloc);
}

}  // namespace
