#pragma once

#include "host/browser/Worker.h"
#include "host/browser/tree/LibraryLoader.h"
#include "host/installation/IndexSearch.h"

#include <VelkLibrary/Search/Info.h>

#include <QObject>
#include <QString>
#include <QTimer>

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

/// Searches in the background while the user types: a search begins a moment after the last key, and the
/// next key ends it. Used on the user-interface thread only.
class SearchRunner : public QObject
{
    Q_OBJECT

public:
    explicit SearchRunner(QObject* parent = nullptr);
    ~SearchRunner() override;

    /// Sets the libraries for the searches that follow.
    void setLibraries(std::vector<BrowsedLibrary> libraries);

    /// Searches for a text soon, and drops any earlier search. An empty text only drops that.
    void search(const QString& text);
    /// Searches at once, without the pause.
    void searchNow(const QString& text);

    /// The pause in typing after which a search begins.
    static constexpr int pauseMilliseconds = 120;

Q_SIGNALS:
    /// The search for the last text has ended.
    void found(const std::shared_ptr<const VelkHost::SearchOutcome>& outcome);

private:
    void cancel();
    void start();

    std::vector<BrowsedLibrary> libraries_;
    QString text_;
    QTimer pause_;
    std::stop_source stop_;
    Worker worker_;
};

}  // namespace VelkHost
