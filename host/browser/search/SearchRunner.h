#pragma once

#include "host/browser/Worker.h"
#include "host/installation/IndexSearch.h"
#include "host/installation/SearchIndex.h"

#include <VelkLibrary/Search/Info.h>

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace VelkHost {

/// The result of a search, with what was searched for.
struct SearchOutcome
{
    QString text;
    Library::Search::Info info;
    SearchResult result;
};

/// The libraries that can be searched.
struct SearchedLibraries
{
    std::vector<LoadedLibrary> libraries;
    std::vector<bool> leftOut;  ///< for each of them: the user has hidden it
};

/// Searches in the background while the user types: each key begins a search, and the next key ends it. The libraries
/// are made ready for that when they have not changed for a moment. Used on the user-interface thread only.
class SearchRunner : public QObject
{
    Q_OBJECT

public:
    explicit SearchRunner(QObject* parent = nullptr);
    ~SearchRunner() override;

    using Source = std::function<SearchedLibraries()>;
    /// Sets what tells the libraries to search in. It is asked when a search begins, and not again before
    /// librariesChanged().
    void setSource(Source source);
    /// The source tells other libraries than before. The last text is searched for again, once they have not changed
    /// for a moment. A search under way goes on, so that its user gets an answer while libraries keep arriving.
    void librariesChanged();

    /// Searches for a text, and drops any earlier search. An empty text only drops that.
    void search(const QString& text);

    /// Frees an outcome, or something like it, in the background: it may be the last that holds a library.
    void release(std::shared_ptr<const void> data);

    /// How long libraries must not have changed before they are made ready, and searched again.
    static constexpr int pauseMilliseconds = 120;

Q_SIGNALS:
    /// The search for the last text has ended.
    void found(const std::shared_ptr<const VelkHost::SearchOutcome>& outcome);

    /// There was too little memory for the search for the last text.
    void ranOut();

private:
    void cancel();
    void start();
    void catchUp();
    void take(std::shared_ptr<const SearchOutcome> outcome);
    void followLibraries();
    std::shared_ptr<const SearchedLibraries> libraries();

    Source source_;
    std::shared_ptr<const SearchedLibraries> libraries_;  // what the source told; null when it is to be asked
    const std::shared_ptr<SearchIndex> index_ = std::make_shared<SearchIndex>();
    bool isAnswered_ = true;   // whether a search for the last text has ended
    bool isOutdated_ = false;  // whether that search knows other libraries than the source
    QString text_;
    QTimer pause_;
    std::stop_source stop_;
    Worker worker_;
};

}  // namespace VelkHost
