#pragma once

#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Network/detail/UnreachableServers.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Velk::detail {

/// Where the body of an answer goes. A false result ends the transfer; failure() says why.
class Body
{
public:
    virtual ~Body() = default;
    Body() = default;
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;

    /// Called before the first byte, even for an empty body. `declared` is the body's size in bytes if the answer
    /// states one.
    virtual bool begin(std::optional<std::uint64_t> declared) = 0;
    virtual bool take(std::string_view bytes) = 0;
    /// The body is complete.
    virtual bool end() = 0;

    const TransferFailure& failure() const noexcept { return failure_; }

protected:
    /// Notes why the transfer ends. Always returns false, so that a caller can return the result.
    bool fail(unsigned int code, std::string reason);

private:
    TransferFailure failure_;
};

/// For requests that need no body.
class NoBody : public Body
{
public:
    bool begin(std::optional<std::uint64_t>) override { return true; }
    bool take(std::string_view) override { return true; }
    bool end() override { return true; }
};

/// A text of at most `limit` bytes.
class TextBody : public Body
{
public:
    explicit TextBody(std::uint64_t limit) noexcept : limit_(limit) {}

    bool begin(std::optional<std::uint64_t> declared) override;
    bool take(std::string_view bytes) override;
    bool end() override { return true; }

    std::string& text() noexcept { return text_; }

private:
    std::uint64_t limit_;
    std::string text_;
};

/// A file that is replaced when the body is complete. Takes at most `limit` bytes, and never more than leaves
/// the disk's reserve free.
class FileBody : public Body
{
public:
    FileBody(fileString target, std::optional<std::uint64_t> limit);

    bool begin(std::optional<std::uint64_t> declared) override;
    bool take(std::string_view bytes) override;
    bool end() override;

private:
    bool write();
    bool hasRoomFor(std::uint64_t bytes);
    bool failWriting();

    fileString target_;
    std::optional<std::uint64_t> limit_;
    std::optional<ReplacementFile> file_;
    std::string buffer_;
    std::uint64_t taken_ = 0;
    std::uint64_t room_ = 0;  // bytes that may be written before the disk is checked again
};

}  // namespace Velk::detail
