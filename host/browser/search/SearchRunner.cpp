#include "host/browser/search/SearchRunner.h"

#include <utility>

namespace VelkHost {

SearchRunner::SearchRunner(QObject* parent) : QObject(parent)
{
    pause_.setSingleShot(true);
    pause_.setInterval(pauseMilliseconds);
    connect(&pause_, &QTimer::timeout, this, &SearchRunner::catchUp);
}

SearchRunner::~SearchRunner()
{
    cancel();
}

void SearchRunner::setSource(Source source)
{
    source_ = std::move(source);
}

void SearchRunner::librariesChanged()
{
    release(std::exchange(libraries_, nullptr));
    isOutdated_ = true;
    if (isAnswered_)
        pause_.start();
}

void SearchRunner::search(const QString& text)
{
    cancel();
    text_ = text;
    isAnswered_ = text.trimmed().isEmpty();
    if (!isAnswered_)
        start();
    else if (isOutdated_)
        pause_.start();
}

/// Searches in the libraries as they are now; where nothing is searched for, makes them ready for the first key.
void SearchRunner::catchUp()
{
    if (!text_.trimmed().isEmpty())
        return start();
    isOutdated_ = false;
    worker_.run([index = index_, libraries = libraries()]() -> Worker::Arrival {
        index->setLibraries(libraries->libraries);
        return {};
    });
}

void SearchRunner::release(std::shared_ptr<const void> data)
{
    if (data != nullptr)
        worker_.release(std::move(data));
}

void SearchRunner::cancel()
{
    pause_.stop();
    stop_.request_stop();
    worker_.drop();
}

void SearchRunner::start()
{
    cancel();
    stop_ = std::stop_source();
    isOutdated_ = false;
    auto job = [this, text = text_, libraries = libraries(), stop = stop_.get_token()]() -> Worker::Arrival {
        SearchRequest request;
        request.text = text.toStdString();
        Library::Search::Info info = searchInfo(request);
        index_->setLibraries(libraries->libraries);
        SearchResult result = searchIndex(index_->state(), request, info, libraries->leftOut, stop);
        auto outcome = std::make_shared<const SearchOutcome>(SearchOutcome{text, std::move(info), std::move(result)});
        return [this, outcome = std::move(outcome), stop]() mutable {
            if (stop.stop_requested())
                release(std::move(outcome));
            else
                take(std::move(outcome));
        };
    };
    worker_.run(std::move(job), [this, stop = stop_.get_token()] {
        if (stop.stop_requested())
            return;
        isAnswered_ = true;
        Q_EMIT ranOut();
        followLibraries();
    });
}

void SearchRunner::take(std::shared_ptr<const SearchOutcome> outcome)
{
    isAnswered_ = true;
    Q_EMIT found(outcome);
    followLibraries();
    release(std::move(outcome));  // the receiver may have let go of it already
}

/// Lets the last text be searched for again where libraries have changed since; the receiver of its answer may have
/// asked for another one.
void SearchRunner::followLibraries()
{
    if (isOutdated_ && !pause_.isActive() && isAnswered_)
        pause_.start();
}

std::shared_ptr<const SearchedLibraries> SearchRunner::libraries()
{
    if (libraries_ == nullptr)
        libraries_ = std::make_shared<const SearchedLibraries>(source_ ? source_() : SearchedLibraries());
    return libraries_;
}

}  // namespace VelkHost
