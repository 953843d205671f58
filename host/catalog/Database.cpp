#include "host/catalog/Database.h"

#include "host/support/FileError.h"
#include "host/support/System.h"

#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/PercentEncoding.h>

#include <sqlite3.h>

#include <new>
#include <utility>

namespace VelkHost {
namespace {

constexpr int workPerCall = 1'000;             // instructions of SQLite between two calls of the handler
constexpr std::int64_t baseWork = 10'000'000;  // instructions allowed for any file
constexpr std::int64_t workPerByte = 8;  // and for each of its bytes; a row takes some 15 bytes and 20 instructions

/// The file as a URI that asks for a read without locks and journals. An absolute path gets an empty authority, so that
/// one that begins with "//" is not read as a host's name.
std::string immutableUri(const fileString& file)
{
    const auto isUnreserved = [](char c) {
        return Velk::Ascii::isLetter(c) || Velk::Ascii::isDigit(c) ||
               std::string_view("-._~/").find(c) != std::string_view::npos;
    };
    const std::string path = pathForLibraries(file);
    return (path.starts_with('/') ? "file://" : "file:") + Velk::percentEncoded(path, isUnreserved) + "?immutable=1";
}

int countDown(void* workLeft)
{
    return --*static_cast<std::int64_t*>(workLeft) < 0 ? 1 : 0;
}

std::string_view view(const void* data, int size)
{
    return data == nullptr ? std::string_view()
                           : std::string_view(static_cast<const char*>(data), static_cast<std::size_t>(size));
}

Reason reasonOf(int code, const char* message)
{
    switch (code & 0xFF) {
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_TOOBIG:
        case SQLITE_ERROR:
            return {"is damaged (%1)", {message}};
        case SQLITE_INTERRUPT:
            return "is damaged (its tables never end)";
        case SQLITE_FULL:
            return "cannot be written: the disk is full";
        case SQLITE_CANTOPEN:
            return "cannot be opened";
        default:
            return message;
    }
}

}  // namespace

void Database::Closer::operator()(sqlite3* handle) const
{
    sqlite3_close(handle);
}

Database::Database(const fileString& path, const std::string& uri, int flags) : path_(path)
{
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(uri.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(handle);
    if (handle == nullptr)
        throw std::bad_alloc();
    if (result != SQLITE_OK)
        fail();
}

Database::~Database() = default;
Database::Database(Database&&) noexcept = default;

Database Database::openForReading(const fileString& path, std::uint64_t fileBytes, int maximumValueBytes)
{
    Database database(path, immutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    database.limitTrust(fileBytes, maximumValueBytes);
    return database;
}

Database Database::openForWriting(const fileString& path)
{
    Database database(path, pathForLibraries(path), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE");
    return database;
}

void Database::limitTrust(std::uint64_t fileBytes, int maximumValueBytes)
{
    sqlite3* const handle = handle_.get();
    for (const auto& [option, value] : {std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                        {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                        {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                        {SQLITE_DBCONFIG_ENABLE_VIEW, 0}})
        sqlite3_db_config(handle, option, value, nullptr);
    for (const auto& [limit, value] : {std::pair{SQLITE_LIMIT_LENGTH, maximumValueBytes},
                                       {SQLITE_LIMIT_COLUMN, 32},
                                       {SQLITE_LIMIT_EXPR_DEPTH, 20},
                                       {SQLITE_LIMIT_ATTACHED, 0},
                                       {SQLITE_LIMIT_TRIGGER_DEPTH, 1},
                                       {SQLITE_LIMIT_WORKER_THREADS, 0}})
        sqlite3_limit(handle, limit, value);
    workLeft_ =
        std::make_unique<std::int64_t>((baseWork + workPerByte * static_cast<std::int64_t>(fileBytes)) / workPerCall);
    sqlite3_progress_handler(handle, workPerCall, countDown, workLeft_.get());
    execute("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0");
}

void Database::fail() const
{
    const int code = sqlite3_errcode(handle_.get());
    if (code == SQLITE_NOMEM)
        throw std::bad_alloc();
    throw FileError(path_, reasonOf(code, sqlite3_errmsg(handle_.get())));
}

void Database::execute(const std::string& sql)
{
    if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

Statement Database::prepare(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        fail();
    return Statement(*this, statement);
}

void Database::close()
{
    if (sqlite3_close(handle_.get()) != SQLITE_OK)
        fail();
    static_cast<void>(handle_.release());
}

void Statement::Closer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

void Statement::check(int result) const
{
    if (result != SQLITE_OK)
        database_.fail();
}

bool Statement::next()
{
    if (isAtEnd_)
        return false;  // another step would begin again
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        database_.fail();
    isAtEnd_ = result == SQLITE_DONE;
    return !isAtEnd_;
}

std::int64_t Statement::integer(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

bool Statement::isInteger(int column) const
{
    return sqlite3_column_type(statement_.get(), column) == SQLITE_INTEGER;
}

double Statement::real(int column) const
{
    return sqlite3_column_double(statement_.get(), column);
}

bool Statement::isNumber(int column) const
{
    const int type = sqlite3_column_type(statement_.get(), column);
    return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::string_view Statement::bytes(int column) const
{
    if (const auto found = text(column))
        return *found;
    return view(sqlite3_column_blob(statement_.get(), column), sqlite3_column_bytes(statement_.get(), column));
}

std::optional<std::string_view> Statement::text(int column) const
{
    if (sqlite3_column_type(statement_.get(), column) != SQLITE_TEXT)
        return std::nullopt;
    const void* const data = sqlite3_column_text(statement_.get(), column);
    if (data == nullptr)
        throw std::bad_alloc();  // the one reason for a text to have no address
    return view(data, sqlite3_column_bytes(statement_.get(), column));
}

Statement& Statement::set(int parameter, std::int64_t value)
{
    check(sqlite3_bind_int64(statement_.get(), parameter, value));
    return *this;
}

Statement& Statement::setReal(int parameter, double value)
{
    check(sqlite3_bind_double(statement_.get(), parameter, value));
    return *this;
}

Statement& Statement::setText(int parameter, std::string_view value)
{
    check(sqlite3_bind_text64(statement_.get(), parameter, value.data() == nullptr ? "" : value.data(), value.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

Statement& Statement::setBlob(int parameter, std::string_view value)
{
    check(sqlite3_bind_blob64(statement_.get(), parameter, value.data() == nullptr ? "" : value.data(), value.size(),
                              SQLITE_STATIC));
    return *this;
}

Statement& Statement::setNull(int parameter)
{
    check(sqlite3_bind_null(statement_.get(), parameter));
    return *this;
}

void Statement::run()
{
    static_cast<void>(next());
    check(sqlite3_reset(statement_.get()));
    isAtEnd_ = false;
}

}  // namespace VelkHost
