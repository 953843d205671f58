#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QString>
#include <QStringList>

#include <map>

class QSettings;

namespace VelkHost {

class BrowserWindow;

/// The window's state, kept in the settings file between starts: its size and place, its splitter, whether
/// searches are explained, which kinds of library are hidden, which folders are open, and what is selected.
class WindowState
{
public:
    /// Reads `file`; the state is empty when there is no such file, or it holds no state.
    WindowState(BrowserWindow& window, const QString& file);

    /// Puts the window into the state, except for its libraries.
    void restoreWindow() const;
    /// Opens in a library what was open before; only the first time that it is read. Then selectCurrent() follows.
    void openFolders(const fileString& library) const;
    /// Selects in a library what was selected before, and forgets what was open and selected there.
    void selectCurrent(const fileString& library);

    /// Writes the state that the window is in. Throws what changeSettings() throws.
    void save() const;

private:
    /// What was open and selected in a library.
    struct LibraryState
    {
        QStringList openFolders;  // names from the category down, joined; those above come first
        QString current;          // "item:" and its unique id, or "folder:" and its names; or empty
    };

    void saveLibraries(QSettings& settings) const;
    LibraryState stateOf(const fileString& library) const;

    BrowserWindow& window_;
    const QString file_;
    std::map<fileString, LibraryState> libraries_;
};

}  // namespace VelkHost
