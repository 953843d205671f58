#pragma once

#include "host/browser/BrowserWindow.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>

#include <functional>
#include <map>
#include <stdexcept>

namespace faults {

/// How the program ends.
enum class Verdict {
    Done = 0,     ///< the window says that all is done
    Failed = 3,   ///< the window says what went wrong
    NoSuch = 9,   ///< there is no such filter
    Silent = 14,  ///< the window says neither, or nothing in time
};

/// Does in the window what a user does, and reads what the user sees. A hand that cannot go on throws Unable.
class Hand : public QObject
{
public:
    struct Unable : std::runtime_error
    {
        using std::runtime_error::runtime_error;
    };
    /// Thrown when something that was begun does not end.
    struct WaitedInVain : Unable
    {
        using Unable::Unable;
    };

    explicit Hand(VelkHost::BrowserWindow& window);

    /// Does one thing, such as {"import", "FILE"}, and closes the window when it has said what became of it.
    Verdict work(const QStringList& words);

    /// What was said, in its order.
    const QStringList& said() const { return said_; }

private:
    Verdict importFile(const QString& file);
    Verdict update();
    Verdict addFilter(const QString& name, const QString& library);
    Verdict removeFilter(const QString& name);
    Verdict useFilter(const QString& name);
    Verdict mergeFilters(const QString& file);
    Verdict editCard(const QString& manufacturer, const QString& field, const QString& text);
    Verdict updateCards();
    Verdict changeSettings();

    void settle();
    void waitFor(const std::function<bool()>& condition, const char* what);
    void triggerAction(const char* objectName);
    void selectItemOf(const QString& manufacturer);
    void acceptFilters(QWidget& editor);
    bool wasSaid(const char* pattern) const;
    Verdict verdictOf(const char* done) const;
    Verdict verdictOfFilters(const std::function<bool()>& isShown) const;
    bool lists(const QString& filter) const;
    bool close();

    template <typename Widget>
    Widget& find(const char* objectName, const QObject* parent = nullptr) const
    {
        auto* const found =
            (parent == nullptr ? &window_ : parent)->findChild<Widget*>(QString::fromLatin1(objectName));
        if (found == nullptr)
            throw Unable(std::string("there is no ") + objectName);
        return *found;
    }

    /// The dialog of that name, once it is open, or something else was said.
    template <typename Dialog>
    Dialog& dialog(const char* objectName)
    {
        const auto isOpen = [&] {
            const auto* const found = window_.findChild<Dialog*>(QString::fromLatin1(objectName));
            return (found != nullptr && found->isVisible()) || said_.size() > before_;
        };
        waitFor(isOpen, objectName);
        return find<Dialog>(objectName);
    }

    VelkHost::BrowserWindow& window_;
    QStringList said_;
    QStringList::size_type before_ = 0;  // the work began
};

}  // namespace faults
