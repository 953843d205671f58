#include "BulkPeers.h"

#include <hs/hs.h>
#include <re2/re2.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace bench {
namespace {

class HyperscanDatabase
{
public:
    explicit HyperscanDatabase(const std::vector<std::string>& literals)
    {
        std::vector<const char*> texts;
        std::vector<std::size_t> sizes;
        for (const std::string& literal : literals) {
            texts.push_back(literal.data());
            sizes.push_back(literal.size());
        }
        const std::vector<unsigned> zeros(literals.size(), 0);
        hs_compile_error_t* error = nullptr;
        if (hs_compile_lit_multi(texts.data(), zeros.data(), zeros.data(), sizes.data(),
                                 static_cast<unsigned>(literals.size()), HS_MODE_BLOCK, nullptr, &database_,
                                 &error) != HS_SUCCESS ||
            hs_alloc_scratch(database_, &scratch_) != HS_SUCCESS)
            throw std::runtime_error("Hyperscan refuses a search");
    }
    ~HyperscanDatabase()
    {
        hs_free_scratch(scratch_);
        hs_free_database(database_);
    }
    HyperscanDatabase(const HyperscanDatabase&) = delete;
    HyperscanDatabase& operator=(const HyperscanDatabase&) = delete;

    std::size_t placesIn(const std::string& block) const
    {
        std::size_t places = 0;
        hs_scan(database_, block.data(), static_cast<unsigned>(block.size()), 0, scratch_, count, &places);
        return places;
    }

private:
    static int count(unsigned, unsigned long long, unsigned long long, unsigned, void* places)
    {
        ++*static_cast<std::size_t*>(places);
        return 0;
    }

    hs_database_t* database_ = nullptr;
    hs_scratch_t* scratch_ = nullptr;
};

void check(int result, sqlite3* database)
{
    if (result != SQLITE_OK && result != SQLITE_DONE && result != SQLITE_ROW)
        throw std::runtime_error(sqlite3_errmsg(database));
}

using Statement = std::shared_ptr<sqlite3_stmt>;

Statement prepare(sqlite3* database, const char* text)
{
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(database, text, -1, &statement, nullptr), database);
    return {statement, sqlite3_finalize};
}

}  // namespace

BulkSearch memchrOver(const std::string& block)
{
    return [&block] { return std::memchr(block.data(), 1, block.size()) == nullptr ? std::size_t{0} : 1; };
}

BulkSearch hyperscanOver(const std::string& block, const std::vector<std::string>& literals)
{
    const auto database = std::make_shared<HyperscanDatabase>(literals);
    return [&block, database] { return database->placesIn(block); };
}

BulkSearch re2Over(const std::string& block, const std::vector<std::string>& literals)
{
    std::string pattern;
    for (const std::string& literal : literals)
        pattern.append(pattern.empty() ? "" : "|").append(RE2::QuoteMeta(literal));
    const auto regex = std::make_shared<RE2>(pattern, RE2::Latin1);
    return [&block, regex] {
        re2::StringPiece rest(block);
        std::size_t places = 0;
        while (RE2::FindAndConsume(&rest, *regex))
            ++places;
        return places;
    };
}

struct TrigramIndex::Database
{
    sqlite3* handle = nullptr;
};

TrigramIndex::TrigramIndex(const std::vector<std::string>& texts) : database_(new Database)
{
    sqlite3*& database = database_->handle;
    check(sqlite3_open(":memory:", &database), database);
    check(
        sqlite3_exec(database, "CREATE VIRTUAL TABLE entries USING fts5(texts, content='', tokenize='trigram'); BEGIN",
                     nullptr, nullptr, nullptr),
        database);
    const Statement insert = prepare(database, "INSERT INTO entries(rowid, texts) VALUES (?, ?)");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        sqlite3_bind_int64(insert.get(), 1, static_cast<sqlite3_int64>(i));
        sqlite3_bind_text(insert.get(), 2, texts[i].data(), static_cast<int>(texts[i].size()), SQLITE_STATIC);
        check(sqlite3_step(insert.get()), database);
        sqlite3_reset(insert.get());
    }
    check(sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr), database);
}

TrigramIndex::~TrigramIndex()
{
    sqlite3_close_v2(database_->handle);
    delete database_;
}

BulkSearch TrigramIndex::search(const std::vector<std::string>& literals) const
{
    std::string expression;
    for (const std::string& literal : literals) {
        if (literal.size() < 3)
            return nullptr;
        expression.append(expression.empty() ? "\"" : " OR \"").append(literal).append("\"");
    }
    sqlite3* const database = database_->handle;
    const Statement select = prepare(database, "SELECT rowid FROM entries WHERE entries MATCH ?");
    check(sqlite3_bind_text(select.get(), 1, expression.c_str(), -1, SQLITE_TRANSIENT), database);
    return [select] {
        std::size_t entries = 0;
        while (sqlite3_step(select.get()) == SQLITE_ROW)
            ++entries;
        sqlite3_reset(select.get());
        return entries;
    };
}

std::size_t TrigramIndex::bytes() const
{
    const Statement pages = prepare(database_->handle, "PRAGMA page_count");
    const Statement size = prepare(database_->handle, "PRAGMA page_size");
    sqlite3_step(pages.get());
    sqlite3_step(size.get());
    return static_cast<std::size_t>(sqlite3_column_int64(pages.get(), 0) * sqlite3_column_int64(size.get(), 0));
}

}  // namespace bench
