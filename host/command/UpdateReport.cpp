#include "host/command/UpdateReport.h"

#include "host/support/DisplayText.h"
#include "host/support/JsonText.h"
#include "host/support/Output.h"
#include "host/support/QtText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/ErrorLog.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <string>
#include <vector>

namespace VelkHost {
namespace {

using What = LibraryNews::What;

const char* outcomeName(UpdateOutcome outcome)
{
    switch (outcome) {
        case UpdateOutcome::Cancelled:
            return "cancelled";
        case UpdateOutcome::Failed:
            return "failed";
        case UpdateOutcome::Installed:
            return "installed";
        default:
            return "up to date";
    }
}

std::string withdrawnText(const LibraryNews& news)
{
    const std::string message = news.why.english();
    return message.empty() ? "withdrawn" : "withdrawn: " + message;
}

std::string lineOf(const LibraryNews& news)
{
    const std::string path = news.catalog.humanReadableString();
    const std::string name = news.catalog.stem().humanReadableString();
    switch (news.what) {
        case What::Installed:
            return "installed  " + path;
        case What::Failed:
            return "kept       " + path + ": " + news.why.english();
        case What::Withdrawn:
            return name + ": " + withdrawnText(news);
        default:
            return name + ": " + news.why.english();
    }
}

bool isAnyInstalled(const UpdateResult& result)
{
    return std::any_of(result.news.begin(), result.news.end(),
                       [](const LibraryNews& news) { return news.what == What::Installed; });
}

std::string textOf(const UpdateResult& result, std::size_t kilobytes)
{
    std::string lines;
    for (const LibraryNews& news : result.news)
        lines += printableUtf8(lineOf(news)) + "\n";
    if (result.outcome == UpdateOutcome::Cancelled)
        return lines + "Cancelled.\n";
    if (result.outcome == UpdateOutcome::Failed)
        return lines + "Not everything could be updated; see " +
               printableUtf8(Library::ErrorLog::file().humanReadableString()) + "\n";
    if (!isAnyInstalled(result))
        lines += "Everything is up to date.\n";
    if (kilobytes > 0)
        lines += formatWithThousandsSeparatorPrecision(static_cast<double>(kilobytes), 0) + " KB downloaded.\n";
    return lines;
}

/// The news of one sort: for each library its path and the reason under that name.
QJsonArray listOf(const UpdateResult& result, What what, const QString& reason)
{
    QJsonArray list;
    for (const LibraryNews& news : result.news)
        if (news.what == what)
            list.append(QJsonObject{{QStringLiteral("path"), qtText(news.catalog.utf8())},
                                    {reason, qtText(news.why.english())}});
    return list;
}

/// The stems of the files that were handed over, referenced files included.
QJsonArray updatedNames(const UpdateResult& result)
{
    QJsonArray names;
    for (const std::string& name : result.module.updatedNames)
        names.append(qtText(StringConvert::toStdUtf8String(StringConvert::fromWin1252(name))));
    return names;
}

QJsonObject jsonOf(const UpdateResult& result, std::size_t kilobytes)
{
    QJsonArray installed;
    for (const LibraryNews& news : result.news)
        if (news.what == What::Installed)
            installed.append(qtText(news.catalog.utf8()));
    QJsonObject object{{QStringLiteral("outcome"), qtText(outcomeName(result.outcome))},
                       {QStringLiteral("updated"), updatedNames(result)},
                       {QStringLiteral("installed"), installed},
                       {QStringLiteral("kept"), listOf(result, What::Failed, QStringLiteral("reason"))},
                       {QStringLiteral("withdrawn"), listOf(result, What::Withdrawn, QStringLiteral("message"))},
                       {QStringLiteral("notServed"), listOf(result, What::NotServed, QStringLiteral("reason"))},
                       {QStringLiteral("kilobytes"), static_cast<double>(kilobytes)},
                       {QStringLiteral("log"), qtText(Library::ErrorLog::file().utf8())}};
    if (result.failure)
        object.insert(QStringLiteral("error"), qtText(result.failure->english()));
    if (result.outcome != UpdateOutcome::Cancelled)
        object.insert(QStringLiteral("resultCode"), static_cast<double>(result.module.resultCode));
    return object;
}

}  // namespace

void writeUpdateReport(Output& output, const UpdateResult& result, std::size_t kilobytes, bool json)
{
    if (result.failure)
        output.error(result.failure->english());
    output.write(json ? jsonText(jsonOf(result, kilobytes)) : textOf(result, kilobytes));
}

}  // namespace VelkHost
