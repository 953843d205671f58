#include "host/browser/language/HostTexts.h"

#include <VelkCommon/Text/EnglishTexts.h>
#include <VelkCommon/Text/StringConvert.h>

#include <QCoreApplication>
#include <QLocale>

#include <optional>
#include <string>

namespace VelkHost {
namespace {

/// The module's texts, listed for the tool that collects the texts to translate.
[[maybe_unused]] constexpr const char* libraryTexts[] = {
    QT_TRANSLATE_NOOP("Library", "%1% %%"),
    QT_TRANSLATE_NOOP("Library", "%1% of %2%"),
    QT_TRANSLATE_NOOP("Library", "Shows the amounts. Click to hide them."),
    QT_TRANSLATE_NOOP("Library", "Shows no numbers. Click to show the percentage."),
    QT_TRANSLATE_NOOP("Library", "Shows the percentage. Click to show the amounts."),
    QT_TRANSLATE_NOOP("Library", "Downloading %1%"),
    QT_TRANSLATE_NOOP("Library", "Checking catalogs"),
    QT_TRANSLATE_NOOP("Library", "Checking "),
    QT_TRANSLATE_NOOP("Library", "Asking the service about %1%"),
    QT_TRANSLATE_NOOP("Library", "KB"),
    QT_TRANSLATE_NOOP("Library", "No filter"),
    QT_TRANSLATE_NOOP("Library", "Cabinet"),
    QT_TRANSLATE_NOOP("Library", "Column"),
    QT_TRANSLATE_NOOP("Library", "Countertop"),
    QT_TRANSLATE_NOOP("Library", "Curtain wall"),
    QT_TRANSLATE_NOOP("Library", "Dimension"),
    QT_TRANSLATE_NOOP("Library", "Door"),
    QT_TRANSLATE_NOOP("Library", "Electrical"),
    QT_TRANSLATE_NOOP("Library", "Fixture"),
    QT_TRANSLATE_NOOP("Library", "Furniture"),
    QT_TRANSLATE_NOOP("Library", "Molding"),
    QT_TRANSLATE_NOOP("Library", "Railing"),
    QT_TRANSLATE_NOOP("Library", "Roof"),
    QT_TRANSLATE_NOOP("Library", "Stairs"),
    QT_TRANSLATE_NOOP("Library", "Wall"),
    QT_TRANSLATE_NOOP("Library", "Window"),
    QT_TRANSLATE_NOOP("Library", "Contact the manufacturer for more information about its products."),
    QT_TRANSLATE_NOOP("Library", "A preference has an unexpected type: %1%"),
    QT_TRANSLATE_NOOP("Library", "The file %1% cannot be written."),
};

std::optional<std::u32string> libraryText(unsigned int number)
{
    const auto english = Velk::englishText(static_cast<long>(number));
    if (!english)
        return std::nullopt;
    return StringConvert::toUnicode(QCoreApplication::translate("Library", std::string(*english).c_str()));
}

}  // namespace

void translateHost(Velk::HostServices& services)
{
    const QLocale locale;
    services.resourceString = libraryText;
    services.numberFormat = {QString(locale.groupSeparator()).toStdString(),
                             QString(locale.decimalPoint()).toStdString()};
}

}  // namespace VelkHost
