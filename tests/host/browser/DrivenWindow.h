#pragma once

#include "host/browser/filters/FilteredWindow.h"

#include "host/service/SiteService.h"
#include "support/ScriptedServer.h"

#include <QByteArray>
#include <QModelIndex>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <string>

class QTreeView;

namespace test {

/// What another program gets of a dragged item.
struct DraggedItem
{
    QString text;
    QByteArray item;
    bool hasPicture = false;
};

/// A window beside a content service that publishes libraries with pictures and a manufacturer. Tests drive it with
/// keys and mouse, as a user does, and look at its widgets.
class DrivenWindow : public FilteredWindow
{
protected:
    DrivenWindow();
    ~DrivenWindow() override;

    // ---- The publisher and the service

    /// Publishes the garden, and the furniture, whose chairs are named by a word and a number.
    void publishLibraries(const std::string& chairs);
    /// Fills a published library's file with nonsense, as a failing disk does; repair() restores it.
    void damage(const std::string& library);
    void repair();
    /// Makes the service answer only one more request on each connection, until goOn().
    void holdService();
    void waitUntilHeld() { gate_.waitForArrivals(1); }
    void goOn();

    VelkHost::BrowserOptions options() const { return {{}, service_->address()}; }

    // ---- The user's hands

    /// Presses a key where the focus is.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void pressTimes(int times, int key);
    static void type(const char* text);
    /// Opens a menu of the menu bar by its letter, and chooses an entry by its letter.
    void takeFromMenu(Qt::Key menu, Qt::Key entry);
    /// Drags a row away with the mouse.
    DraggedItem dragOut(QTreeView& view, const QModelIndex& row);
    /// Drops a file on the window.
    void dropFile(const fileString& file);

    // ---- The user's eyes

    QTreeView& tree() { return *window().tree(); }
    QTreeView& hits();
    /// The text of a visible label; "(hidden)" for a hidden one.
    std::string seen(const char* label);
    /// Whether the label shows a picture.
    bool showsPicture(const char* label);
    bool isPanelSeen();
    std::string message() const { return status().toStdString(); }
    /// The names of the current row and those above it, from the top.
    std::string currentPath();
    bool isOpen(const std::string& path);
    /// The results of the search: groups, and their hits indented.
    QStringList found();
    /// Waits until the job has ended and all libraries are read.
    void waitForJob();
    /// Waits until the search for what is in the box has ended.
    void waitForHits();

private:
    QModelIndex indexOf(const std::string& path);

    Gate gate_;
    std::atomic<bool> held_ = false;
    fileString damagedFile_;
    std::string goodBytes_;
    std::unique_ptr<VelkHost::SiteService> service_;
};

}  // namespace test
