#pragma once

#include "host/browser/Worker.h"
#include "host/installation/LibrarySearch.h"

#include <VelkLibrary/Search/Info.h>

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <stop_token>

namespace VelkHost {

/// The result of a search, with everything that it refers to.
struct SearchOutcome
{
    QString text;
    Library::Search::Info info;
    std::shared_ptr<const LibrarySet> libraries;
    SearchResult result;
};

/// Searches in the background while the user types: a search begins a moment after the last key, and the
/// next key ends it. Used on the user-interface thread only.
class SearchRunner : public QObject
{
    Q_OBJECT

public:
    explicit SearchRunner(QObject* parent = nullptr);
    ~SearchRunner() override;

    using Source = std::function<LibrarySet()>;
    /// Sets what tells the libraries to search in. It is asked when a search begins, and not again before
    /// librariesChanged().
    void setSource(Source source);
    /// The source tells other libraries than before. The last text is searched for again, once they have not changed
    /// for a moment. A search under way goes on, so that its user gets an answer while libraries keep arriving.
    void librariesChanged();

    /// Searches for a text soon, and drops any earlier search. An empty text only drops that.
    void search(const QString& text);
    /// Searches at once, without the pause.
    void searchNow(const QString& text);

    /// Frees an outcome, or something like it, in the background: it may be the last that holds a library.
    void release(std::shared_ptr<const void> data);

    /// The pause in typing after which a search begins.
    static constexpr int pauseMilliseconds = 120;

Q_SIGNALS:
    /// The search for the last text has ended.
    void found(const std::shared_ptr<const VelkHost::SearchOutcome>& outcome);

private:
    void cancel();
    void start();
    void take(std::shared_ptr<const SearchOutcome> outcome);
    std::shared_ptr<const LibrarySet> libraries();

    Source source_;
    std::shared_ptr<const LibrarySet> libraries_;  // what the source told; null when it is to be asked
    bool isAnswered_ = true;                       // whether a search for the last text has ended
    bool isOutdated_ = false;                      // whether that search knows other libraries than the source
    QString text_;
    QTimer pause_;
    std::stop_source stop_;
    Worker worker_;
};

}  // namespace VelkHost
