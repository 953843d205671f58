#include "host/command/ManufacturerCommand.h"

#include "host/command/DataCommand.h"
#include "host/command/ManufacturerReport.h"
#include "host/installation/DataError.h"
#include "host/installation/ManufacturerRefresh.h"
#include "host/installation/Manufacturers.h"
#include "host/support/DisplayText.h"
#include "host/support/ParserArguments.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/StringConvert.h>

#include <cstdint>
#include <limits>
#include <optional>

namespace VelkHost {
namespace {

constexpr const char* manufacturerExamples = R"(Examples:
  velk manufacturer update --data-url http://127.0.0.1:8080/manufacturers \
                           --logo-url 'http://127.0.0.1:8080/logo?v=1'
  velk manufacturer list
  velk manufacturer show 7
  velk manufacturer edit 7 --phone '555 0123' --fax default
  velk manufacturer edit 8 --new --name 'Acme Doors' --logo acme.png
  velk manufacturer check

"default" as phone, fax or e-mail stands for the default text. A logo is named by its
file, which is kept beside the data file. An update takes the service's data when it
is newer than the installation's, and then drops what the service does not have.

Exit codes: 0 done, 1 the check found something, 2 wrong command line, 5 the output
cannot be written, 6 the update failed or a logo is missing, 9 there is no such
manufacturer, or the data file is damaged or cannot be written.)";

struct ManufacturerArguments
{
    std::optional<std::int32_t> id;
    CardEdit edit;
    std::optional<std::string> defaultText;
    std::string dataUrl;
    std::string logoUrl;
    std::size_t limit = 20;
    std::string home;
    std::string format;

    bool json() const { return format == "json"; }
};

std::string titleOf(std::int32_t id, const std::u32string& manufacturer)
{
    const std::string name = StringConvert::toStdUtf8String(manufacturer);
    return "manufacturer " + std::to_string(id) + (name.empty() ? "" : " (" + printableUtf8(name) + ")");
}

// ---- What the commands do ------------------------------------------------------------------------

ExitCode listCards(const ManufacturerArguments& arguments, Output& output)
{
    const ManufacturerFile file = installedManufacturers();
    output.write(arguments.json() ? cardsJson(file.cards, file.defaultText) : cardTable(file.cards, output.columns()));
    return ExitCode::Success;
}

ExitCode showCard(const ManufacturerArguments& arguments, Output& output)
{
    const ManufacturerFile file = installedManufacturers();
    const Manufacturer& card = cardWithId(file, *arguments.id);
    output.write(arguments.json() ? cardJson(*arguments.id, card, file.defaultText)
                                  : cardText(*arguments.id, card, file.defaultText, output.columns()));
    return ExitCode::Success;
}

void editFields(const ManufacturerArguments& arguments, Output& output)
{
    const EditedCard card = editCard(*arguments.id, arguments.edit);
    std::string fields;
    for (const std::string& field : card.changed)
        fields += (fields.empty() ? "" : ", ") + field;
    const std::string title = titleOf(*arguments.id, card.name);
    if (arguments.edit.make)
        output.write("Made " + title + ".\n");
    else if (fields.empty())
        output.write("There is nothing to change in " + title + ".\n");
    else
        output.write("Changed " + fields + " of " + title + ".\n");
}

ExitCode editCards(const ManufacturerArguments& arguments, Output& output)
{
    if (!arguments.edit.empty())
        editFields(arguments, output);
    if (arguments.defaultText)
        output.write(editDefaultText(*arguments.defaultText) ? "Changed the default text.\n"
                                                             : "This is the default text already.\n");
    return ExitCode::Success;
}

ExitCode checkCards(const ManufacturerArguments& arguments, Output& output)
{
    const ManufacturerFile file = installedManufacturers();
    const std::vector<CardProblem> problems = checkManufacturers(file);
    const std::size_t cards = file.cards.size();
    output.write(arguments.json() ? problemJson(problems, cards) : problemTable(problems, cards, output.columns()));
    return problems.empty() ? ExitCode::Success : ExitCode::NoHit;
}

ExitCode updateCards(const ManufacturerArguments& arguments, Output& output)
{
    try {
        const ManufacturerRefresh refresh =
            refreshManufacturers(fromParser(arguments.dataUrl), fromParser(arguments.logoUrl));
        output.write(arguments.json() ? refreshJson(refresh) : refreshText(refresh, arguments.limit, output.columns()));
        return refresh.missingLogos > 0 ? ExitCode::UpdateFailed : ExitCode::Success;
    } catch (const DataError& error) {
        output.error(error.what(), "The manufacturers are as they were.");
        return ExitCode::UpdateFailed;
    }
}

// ---- Their command lines -------------------------------------------------------------------------

void checkEdit(const ManufacturerArguments& arguments)
{
    if (arguments.edit.empty() && (arguments.id || !arguments.defaultText))
        throw CLI::RequiredError("what to change (such as --phone)");
    if (!arguments.edit.empty() && !arguments.id)
        throw CLI::RequiredError("ID (whose card to change)");
}

void checkUpdate(const ManufacturerArguments& arguments)
{
    for (const auto& [option, url] : {std::pair("--data-url", arguments.dataUrl), {"--logo-url", arguments.logoUrl}})
        if (!Curl::downloadable(fromParser(url)))
            throw CLI::ValidationError(option, "must be an address that begins with http:// or https://");
    if (arguments.logoUrl.find('?') == std::string::npos)
        throw CLI::ValidationError("--logo-url", "must hold a query, to which \"&logo-path=NAME\" is added");
}

CLI::Option& addIdOption(CLI::App& command, ManufacturerArguments& arguments)
{
    using Ids = std::numeric_limits<std::int32_t>;
    return addNumberOption(command, "ID", "The manufacturer's number", Ids::min(), Ids::max(),
                           [&arguments](std::int64_t id) { arguments.id = static_cast<std::int32_t>(id); });
}

void addTextOption(CLI::App& command, ManufacturerArguments& arguments, const std::string& field,
                   const std::string& description)
{
    command
        .add_option_function<std::string>(
            "--" + field,
            [&arguments, field](const std::string& value) { arguments.edit.texts[field] = fromParser(value); },
            description)
        ->type_name("TEXT");
}

void addEditOptions(CLI::App& command, ManufacturerArguments& arguments)
{
    addIdOption(command, arguments);
    command.add_flag("--new", arguments.edit.make, "Make a manufacturer with this number");
    for (const CardField& field : cardFields)
        addTextOption(command, arguments, field.name, std::string("The card's ") + field.name);
    addTextOption(command, arguments, "logo", "The name of the logo's file in the data folder");
    command
        .add_option_function<std::string>(
            "--deleted", [&arguments](const std::string& value) { arguments.edit.deleted = value == "yes"; },
            "The manufacturer was withdrawn: yes or no")
        ->check(CLI::IsMember({"yes", "no"}))
        ->type_name("YES|NO");
    command
        .add_option_function<std::string>(
            "--default-text", [&arguments](const std::string& value) { arguments.defaultText = fromParser(value); },
            "What is shown for \"default\" (without an ID)")
        ->type_name("TEXT");
}

}  // namespace

void addManufacturerCommand(CLI::App& app, Output& output, Action& action)
{
    CLI::App* const manufacturer = app.add_subcommand("manufacturer", "The manufacturers' cards and logos");
    manufacturer->require_subcommand(1);
    manufacturer->footer(manufacturerExamples);
    DataCommands<ManufacturerArguments> commands(*manufacturer, output, action);

    const auto lists = commands.add("list", "Show all manufacturers", listCards);
    addFormatOption(lists.command, lists.arguments.format);

    const auto shows = commands.add("show", "Show everything about a manufacturer", showCard);
    addIdOption(shows.command, shows.arguments).required();
    addFormatOption(shows.command, shows.arguments.format);

    const auto edits = commands.add("edit", "Change a manufacturer's card, or make one", editCards, checkEdit);
    addEditOptions(edits.command, edits.arguments);

    const auto checks = commands.add("check", "Look for what is wrong or missing", checkCards);
    addFormatOption(checks.command, checks.arguments.format);

    const auto updates =
        commands.add("update", "Bring the manufacturers up to date from a service", updateCards, checkUpdate);
    updates.command.add_option("--data-url", updates.arguments.dataUrl, "The address of the service's data")
        ->required()
        ->type_name("URL");
    updates.command.add_option("--logo-url", updates.arguments.logoUrl, "The address of its logos, with a query")
        ->required()
        ->type_name("URL");
    addLimitOption(updates.command, updates.arguments.limit, "changes");
    addFormatOption(updates.command, updates.arguments.format);
}

}  // namespace VelkHost
