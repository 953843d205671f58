#include "host/browser/search/SearchRunner.h"

#include <utility>

namespace VelkHost {
namespace {

LibrarySet librarySet(const std::vector<BrowsedLibrary>& libraries)
{
    LibrarySet set;
    for (const BrowsedLibrary& library : libraries)
        set.loaded.push_back({library.path, library.catalog});
    return set;
}

}  // namespace

SearchRunner::SearchRunner(QObject* parent) : QObject(parent)
{
    pause_.setSingleShot(true);
    pause_.setInterval(pauseMilliseconds);
    connect(&pause_, &QTimer::timeout, this, &SearchRunner::start);
}

SearchRunner::~SearchRunner()
{
    cancel();
}

void SearchRunner::setLibraries(std::vector<BrowsedLibrary> libraries)
{
    libraries_ = std::move(libraries);
}

void SearchRunner::search(const QString& text)
{
    cancel();
    text_ = text;
    if (!text.trimmed().isEmpty())
        pause_.start();
}

void SearchRunner::searchNow(const QString& text)
{
    search(text);
    if (pause_.isActive())
        start();
}

void SearchRunner::cancel()
{
    pause_.stop();
    stop_.request_stop();
    worker_.drop();
}

void SearchRunner::start()
{
    pause_.stop();
    stop_ = std::stop_source();
    worker_.run([this, text = text_, libraries = librarySet(libraries_),
                 stop = stop_.get_token()]() -> Worker::Arrival {
        SearchRequest request;
        request.text = text.toStdString();
        Library::Search::Info info = searchInfo(request);
        SearchResult result = runSearch(libraries, request, info, stop);
        auto outcome = std::make_shared<const SearchOutcome>(SearchOutcome{text, std::move(info), std::move(result)});
        return [this, outcome, stop] {
            if (!stop.stop_requested())
                Q_EMIT found(outcome);
        };
    });
}

}  // namespace VelkHost
