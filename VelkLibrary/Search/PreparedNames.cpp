#include <VelkLibrary/Search/PreparedNames.h>

#include <VelkLibrary/Search/detail/NameBlock.h>

#include <optional>

namespace Library::Search {

PreparedNames::PreparedNames() : block_(std::make_unique<detail::NameBlock>()) {}
PreparedNames::PreparedNames(PreparedNames&& other) noexcept = default;
PreparedNames& PreparedNames::operator=(PreparedNames&& other) noexcept = default;
PreparedNames::~PreparedNames() = default;

void PreparedNames::reserve(std::size_t entries, std::size_t bytes)
{
    block_->reserve(entries, bytes);
}

void PreparedNames::addFolder(std::string_view name)
{
    block_->add(name, std::nullopt, true);
}

void PreparedNames::addItem(std::string_view name)
{
    block_->add(name, std::nullopt, false);
}

void PreparedNames::addItem(std::string_view name, std::string_view keywords)
{
    block_->add(name, keywords, false);
}

void PreparedNames::append(const PreparedNames& other)
{
    block_->append(*other.block_);
}

void PreparedNames::close()
{
    block_->close();
}

std::size_t PreparedNames::size() const noexcept
{
    return block_->size();
}

std::string_view PreparedNames::lowerName(std::size_t entry) const noexcept
{
    return entry < block_->size() ? block_->name(entry) : std::string_view();
}

std::size_t PreparedNames::memory() const noexcept
{
    return block_->memory();
}

}  // namespace Library::Search
