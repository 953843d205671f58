#include "host/browser/language/Reasons.h"

#include "host/installation/DataError.h"
#include "host/service/ServiceError.h"
#include "host/support/FileError.h"
#include "host/support/QtText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <new>

namespace VelkHost {
namespace {

/// The reasons why the window's operations can fail, listed for the tool that collects the texts to translate.
[[maybe_unused]] constexpr const char* knownReasons[] = {
    // Files
    QT_TRANSLATE_NOOP("Reason", "is not a path"),
    QT_TRANSLATE_NOOP("Reason", "does not exist"),
    QT_TRANSLATE_NOOP("Reason", "does not exist: %1 is not a folder"),
    QT_TRANSLATE_NOOP("Reason", "is a link to something that cannot be found"),
    QT_TRANSLATE_NOOP("Reason", "is a folder, not a file"),
    QT_TRANSLATE_NOOP("Reason", "is not a file"),
    QT_TRANSLATE_NOOP("Reason", "is larger than %1"),
    QT_TRANSLATE_NOOP("Reason", "cannot be opened for reading; may you read it, and does no other program write it?"),
    QT_TRANSLATE_NOOP("Reason", "cannot be read"),
    QT_TRANSLATE_NOOP("Reason", "cannot be read: %1"),
    QT_TRANSLATE_NOOP("Reason", "cannot be written"),
    QT_TRANSLATE_NOOP("Reason", "cannot be written: %1"),
    QT_TRANSLATE_NOOP("Reason", "cannot be created as a folder: %1"),
    QT_TRANSLATE_NOOP("Reason", "already exists"),
    // Libraries
    QT_TRANSLATE_NOOP("Reason", "is empty"),
    QT_TRANSLATE_NOOP("Reason", "is not a library catalog"),
    QT_TRANSLATE_NOOP("Reason", "is a database, but not a library catalog"),
    QT_TRANSLATE_NOOP("Reason", "was made by a newer version of velk (format %1, this one reads %2)"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: %1"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: it ends within its header"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: it has no format number"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: it is cut off after %1 of %2 bytes"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: it holds something other than a catalog's tables"),
    QT_TRANSLATE_NOOP("Reason", "is damaged: its table \"%1\" is not as it should be"),
    QT_TRANSLATE_NOOP("Reason", "a text is missing"),
    QT_TRANSLATE_NOOP("Reason", "it holds more text than a catalog can"),
    QT_TRANSLATE_NOOP("Reason", "its rows are out of order"),
    QT_TRANSLATE_NOOP("Reason", "an entry belongs to nothing"),
    QT_TRANSLATE_NOOP("Reason", "it does not say which library it is"),
    QT_TRANSLATE_NOOP("Reason", "its kind of library is unknown"),
    QT_TRANSLATE_NOOP("Reason", "it has too many folders"),
    QT_TRANSLATE_NOOP("Reason", "it has too many items"),
    // Databases
    QT_TRANSLATE_NOOP("Reason", "is damaged (%1)"),
    QT_TRANSLATE_NOOP("Reason", "is damaged (its tables never end)"),
    QT_TRANSLATE_NOOP("Reason", "cannot be written: the disk is full"),
    QT_TRANSLATE_NOOP("Reason", "cannot be opened"),
    QT_TRANSLATE_NOOP("Reason", "database disk image is malformed"),
    QT_TRANSLATE_NOOP("Reason", "file is not a database"),
    QT_TRANSLATE_NOOP("Reason", "string or blob too big"),
    QT_TRANSLATE_NOOP("Reason", "database is locked"),
    QT_TRANSLATE_NOOP("Reason", "disk I/O error"),
    // Filters
    QT_TRANSLATE_NOOP("Reason", "is not a filter file; repair it, or move it away"),
    QT_TRANSLATE_NOOP("Reason", "is damaged; repair it, or move it away"),
    QT_TRANSLATE_NOOP("Reason", "is damaged; nothing was merged"),
    QT_TRANSLATE_NOOP("Reason", "cannot be removed; left there, it would bring the filters back"),
    QT_TRANSLATE_NOOP("Reason", "the filters could not be saved"),
    // Manufacturers
    QT_TRANSLATE_NOOP("Reason", "%1; repair it, or move it away"),
    QT_TRANSLATE_NOOP("Reason", "cannot be written; the cards are as they were"),
    QT_TRANSLATE_NOOP("Reason", "there is no manufacturer %1"),
    QT_TRANSLATE_NOOP("Reason", "\"%1\" is not a safe name for a logo"),
    QT_TRANSLATE_NOOP("Reason", "is not a JSON object"),
    QT_TRANSLATE_NOOP("Reason", "%1 is not an object"),
    QT_TRANSLATE_NOOP("Reason", "%1 is not a list"),
    QT_TRANSLATE_NOOP("Reason", "%1 is not a text"),
    QT_TRANSLATE_NOOP("Reason", "%1 is not an integer"),
    QT_TRANSLATE_NOOP("Reason", "%1 is neither true nor false"),
    QT_TRANSLATE_NOOP("Reason", "%1 is not a time"),
    // The service
    QT_TRANSLATE_NOOP("Reason", "\"%1\" is not a web address"),
    QT_TRANSLATE_NOOP("Reason", "%1: cannot be fetched"),
    QT_TRANSLATE_NOOP("Reason", "there is too little memory"),
    QT_TRANSLATE_NOOP("Reason", "cannot reach %1: %2"),
    QT_TRANSLATE_NOOP("Reason", "no such host"),
    QT_TRANSLATE_NOOP("Reason", "it does not accept connections"),
    QT_TRANSLATE_NOOP("Reason", "it does not answer"),
    QT_TRANSLATE_NOOP("Reason", "it closed the connection without an answer"),
    QT_TRANSLATE_NOOP("Reason", "it was cancelled, or nothing came any more"),
    QT_TRANSLATE_NOOP("Reason", "it failed"),
    QT_TRANSLATE_NOOP("Reason", "the certificate is not trusted; VELK_CERTIFICATES names others"),
    QT_TRANSLATE_NOOP("Reason", "the certificates that VELK_CERTIFICATES names cannot be read"),
    QT_TRANSLATE_NOOP("Reason", "the disk is full"),
    QT_TRANSLATE_NOOP("Reason", "what came cannot be written: %1"),
    // Updates
    QT_TRANSLATE_NOOP("Reason", "the list of core libraries cannot be fetched from %1: %2"),
    QT_TRANSLATE_NOOP("Reason", "what %1 sends as the list of core libraries is none"),
    QT_TRANSLATE_NOOP("Reason", "the service cannot be asked about it: %1"),
    QT_TRANSLATE_NOOP("Reason", "the service answers with status %1"),
    QT_TRANSLATE_NOOP("Reason", "it cannot be downloaded: %1"),
    QT_TRANSLATE_NOOP("Reason", "there is a newer version, which was not fetched"),
    QT_TRANSLATE_NOOP("Reason", "it could not be taken over: %1"),
    QT_TRANSLATE_NOOP("Reason", "what the service sent %1"),
    QT_TRANSLATE_NOOP("Reason", "what the service sent is not what it announced"),
    QT_TRANSLATE_NOOP("Reason", "its folder cannot be made"),
    QT_TRANSLATE_NOOP("Reason", "it cannot be replaced: %1"),
    QT_TRANSLATE_NOOP("Reason", "is not what was written"),
    QT_TRANSLATE_NOOP("Reason", "its files are missing or damaged, and could not be fetched again"),
    QT_TRANSLATE_NOOP("Reason", "something failed; the error log tells what"),
    QT_TRANSLATE_NOOP("Reason", "%1 is in use: %2"),
    QT_TRANSLATE_NOOP("Reason", "another program changes it"),
    // Packed libraries
    QT_TRANSLATE_NOOP("Reason", "is not a packed library, or it is damaged"),
    QT_TRANSLATE_NOOP("Reason", "is not a packed library: its catalog file is missing or damaged"),
    QT_TRANSLATE_NOOP("Reason", "is encrypted"),
    QT_TRANSLATE_NOOP("Reason", "its catalog file could not be unpacked; is it damaged, or the disk full?"),
    QT_TRANSLATE_NOOP("Reason", "its textures and other files could not be unpacked; is it damaged, or the disk full?"),
    QT_TRANSLATE_NOOP("Reason", "is not a published site; see \"velk publish --help\""),
    QT_TRANSLATE_NOOP("Reason", "cannot be read; this user needs the right to list and to search it"),
    QT_TRANSLATE_NOOP("Reason", "cannot be listened on; is another program using the port?"),
};

}  // namespace

QString translated(const Reason& reason)
{
    if (reason.number())
        return QLocale().toString(static_cast<qulonglong>(*reason.number()));
    const QString text = QCoreApplication::translate("Reason", reason.text().c_str());
    QStringList parts;
    for (const Reason& part : reason.parts())
        parts.append(translated(part));
    // All at once, as a part may look like a placeholder.
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const int part = i + 1 < text.size() ? text[i + 1].unicode() - u'1' : -1;
        if (text[i] == u'%' && part >= 0 && part < parts.size()) {
            result += parts[part];
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

QString failureText(const std::exception& error)
{
    if (const auto* const file = dynamic_cast<const FileError*>(&error))
        return qtText(file->path().humanReadableString()) + QStringLiteral(": ") + translated(file->why());
    if (const auto* const service = dynamic_cast<const ServiceError*>(&error))
        return qtText(service->address()) + QStringLiteral(": ") + translated(service->why());
    if (const auto* const transfer = dynamic_cast<const TransferError*>(&error))
        return translated({"%1: cannot be fetched", {transfer->url()}});
    if (const auto* const data = dynamic_cast<const DataError*>(&error))
        return translated(data->why());
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return tooLittleMemory();
    return qtText(error.what());
}

QString tooLittleMemory()
{
    return translated("there is too little memory");
}

}  // namespace VelkHost
