#pragma once

#include "host/installation/ManufacturerRefresh.h"
#include "host/installation/Manufacturers.h"

#include <cstddef>
#include <string>
#include <vector>

namespace VelkHost {

/// The cards, fitted into `columns` characters (0 for no limit). UTF-8, safe for terminals.
std::string cardTable(const ManufacturerCards& cards, std::size_t columns);
/// The same as one JSON object (docs/command.md).
std::string cardsJson(const ManufacturerCards& cards, const std::u32string& defaultText);

/// Everything about one card.
std::string cardText(long id, const Manufacturer& card, const std::u32string& defaultText, std::size_t columns);
/// The same as one JSON object.
std::string cardJson(long id, const Manufacturer& card, const std::u32string& defaultText);

/// What is wrong, or that nothing is, with the number of cards.
std::string problemTable(const std::vector<CardProblem>& problems, std::size_t cards, std::size_t columns);
/// The same as one JSON object.
std::string problemJson(const std::vector<CardProblem>& problems, std::size_t cards);

/// What an update did: at most `limit` cards (0 for all), and a line with the sum.
std::string refreshText(const ManufacturerRefresh& refresh, std::size_t limit, std::size_t columns);
/// The same as one JSON object, with all cards.
std::string refreshJson(const ManufacturerRefresh& refresh);

}  // namespace VelkHost
