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

/// A window beside a content service that publishes libraries with pictures and a manufacturer. It is driven by
/// the keys and the mouse, as a user does it, and looked at through its widgets.
class DrivenWindow : public FilteredWindow
{
protected:
    DrivenWindow();
    ~DrivenWindow() override;

    // ---- The publisher and the service

    /// Publishes the furniture, whose chairs are called by a word and a number, and the garden.
    void publishLibraries(const std::string& chairs);
    /// Makes a published library's file one that is none, as a failing disk does; and as it was again.
    void damage(const std::string& library);
    void repair();
    /// The service answers one request more on each connection, until goOn().
    void holdService();
    void waitUntilHeld() { gate_.waitForArrivals(1); }
    void goOn();

    VelkHost::BrowserOptions options() const { return {{}, service_->address()}; }

    // ---- The user's hands

    /// Presses a key where the focus is.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void pressTimes(int times, int key);
    static void type(const char* text);
    /// Opens a menu of the bar by its letter and takes the entry of that letter.
    void takeFromMenu(Qt::Key menu, Qt::Key entry);
    /// Drags a row away with the mouse.
    DraggedItem dragOut(QTreeView& view, const QModelIndex& row);
    /// Drops a file on the window.
    void dropFile(const fileString& file);

    // ---- The user's eyes

    QTreeView& tree() { return *window().tree(); }
    QTreeView& hits();
    /// The text of a label that is seen; "(hidden)" for another.
    std::string seen(const char* label);
    /// A picture is in the label.
    bool showsPicture(const char* label);
    bool isPanelSeen();
    std::string message() const { return status().toStdString(); }
    /// The names of the current row and those above it, from the top.
    std::string currentPath();
    bool isOpen(const std::string& path);
    /// What was found: groups, and their hits indented.
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
