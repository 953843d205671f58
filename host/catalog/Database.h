#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace VelkHost {

class Statement;

/// An open SQLite database. Every operation throws FileError, with the database's path and a sentence
/// for people, and std::bad_alloc. One thread at a time; statements must not outlive it.
class Database
{
public:
    /// Opens a file for reading, as it stands: nothing beside it is read or written (no journal, no
    /// lock), so that a file in a read-only folder opens and a planted journal has no effect. What the
    /// schema could do beyond tables is switched off, and work and lengths are limited, since the file
    /// may come from anybody: `maximumValueBytes` for one value, and work in proportion to the file.
    static Database openForReading(const fileString& path, std::uint64_t fileBytes, int maximumValueBytes);

    /// Opens an empty file for writing. Speed goes before safety: the file only counts once it is complete.
    static Database openForWriting(const fileString& path);

    ~Database();
    Database(Database&&) noexcept;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void execute(const std::string& sql);
    Statement prepare(const std::string& sql);
    /// Writes what is pending and closes the file.
    void close();

    /// Throws for the database's last error.
    [[noreturn]] void fail() const;
    const fileString& path() const noexcept { return path_; }

private:
    struct Closer
    {
        void operator()(sqlite3* handle) const;
    };

    Database(const fileString& path, const std::string& uri, int flags);
    void limitTrust(std::uint64_t fileBytes, int maximumValueBytes);

    fileString path_;
    std::unique_ptr<sqlite3, Closer> handle_;
    std::unique_ptr<std::int64_t> workLeft_;  // calls of the progress handler; at a fixed address
};

/// A prepared statement. Parameters count from 1, columns from 0.
class Statement
{
public:
    /// The next row; false at the end, and from then on.
    bool next();
    std::int64_t integer(int column) const;
    bool isInteger(int column) const;
    /// A whole number or one with a fraction; 0 for any other value.
    double real(int column) const;
    bool isNumber(int column) const;
    bool isNull(int column) const;
    /// The bytes of a text or blob; valid until the next call of next().
    std::string_view bytes(int column) const;
    /// Those of a text, and nothing for any other value.
    std::optional<std::string_view> text(int column) const;

    /// Sets parameters; the bytes are read during run() and must live until then.
    Statement& set(int parameter, std::int64_t value);
    Statement& setReal(int parameter, double value);
    Statement& setText(int parameter, std::string_view value);
    Statement& setBlob(int parameter, std::string_view value);
    Statement& setNull(int parameter);
    /// Executes a statement that returns no rows; it can be run again.
    void run();

private:
    friend class Database;

    struct Closer
    {
        void operator()(sqlite3_stmt* statement) const;
    };

    Statement(const Database& database, sqlite3_stmt* statement) : database_(database), statement_(statement) {}
    void check(int result) const;

    const Database& database_;
    std::unique_ptr<sqlite3_stmt, Closer> statement_;
    bool isAtEnd_ = false;
};

}  // namespace VelkHost
