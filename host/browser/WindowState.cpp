#include "host/browser/WindowState.h"

#include "host/browser/BrowserWindow.h"
#include "host/browser/SettingsFile.h"
#include "host/browser/filters/KindMenu.h"
#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/search/SearchPane.h"
#include "host/support/QtText.h"

#include <QSettings>
#include <QSplitter>
#include <QTreeView>

#include <set>
#include <string>

namespace VelkHost {
namespace {

constexpr QChar nameSeparator = u'\n';  // never part of a name that is shown in one line
constexpr int mostOpenFolders = 1'000;
const QLatin1String itemMark("item:");
const QLatin1String folderMark("folder:");

QString joinedNames(const Catalog& catalog, std::size_t folder)
{
    QStringList names;
    for (const std::string& name : catalog.folderPath(folder))
        names.append(qtText(name));
    return names.join(nameSeparator);
}

void appendOpenFolders(const QTreeView& tree, const LibraryTreeModel& model, const QModelIndex& index,
                       QStringList& names)
{
    const std::optional<LibraryPlace> place = tree.isExpanded(index) ? model.place(index) : std::nullopt;
    if (!place || names.size() >= mostOpenFolders)
        return;
    names.append(joinedNames(*model.library(place->library)->catalog, place->index));
    for (int row = 0; row < model.rowCount(index) && names.size() < mostOpenFolders; ++row)
        appendOpenFolders(tree, model, model.index(row, 0, index), names);
}

}  // namespace

WindowState::WindowState(BrowserWindow& window, const QString& file) : window_(window), file_(file)
{
    SettingsFile settings(file);
    const int count = settings.beginReadArray(QStringLiteral("libraries"));
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const fileString library(settings.value(QStringLiteral("path")).toString().toStdString());
        libraries_[library] = {settings.value(QStringLiteral("open")).toStringList(),
                               settings.value(QStringLiteral("current")).toString()};
    }
}

void WindowState::restoreWindow() const
{
    const SettingsFile settings(file_);
    window_.restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    window_.columns()->restoreState(settings.value(QStringLiteral("window/columns")).toByteArray());
    window_.searchPane()->setExplained(settings.value(QStringLiteral("search/explained")).toBool());
    std::set<LibraryKind> hidden;
    for (const QString& name : settings.value(QStringLiteral("kinds/hidden")).toStringList())
        if (const std::optional<LibraryKind> kind = kindFromName(name.toStdString()))
            hidden.insert(*kind);
    window_.shownLibraries()->kindMenu()->setHidden(hidden);
}

void WindowState::openFolders(const fileString& library) const
{
    const auto kept = libraries_.find(library);
    if (kept == libraries_.end())
        return;
    LibraryTreeModel& model = window_.model();
    for (const QString& names : kept->second.openFolders)
        if (const auto folder = model.folderNamed(library, names.split(nameSeparator)))
            window_.tree()->expand(model.find(*folder));
}

void WindowState::selectCurrent(const fileString& library)
{
    const auto node = libraries_.extract(library);
    if (node.empty())
        return;
    LibraryTreeModel& model = window_.model();
    const QString& current = node.mapped().current;
    std::optional<LibraryPlace> place;
    if (current.startsWith(itemMark))
        place = model.itemNamed(library, current.mid(itemMark.size()).toStdString());
    else if (current.startsWith(folderMark))
        place = model.folderNamed(library, current.mid(folderMark.size()).split(nameSeparator));
    const QModelIndex index = place ? model.find(*place) : QModelIndex();
    if (index.isValid() && !window_.tree()->currentIndex().isValid()) {
        window_.tree()->setCurrentIndex(index);
        window_.tree()->scrollTo(index, QAbstractItemView::PositionAtCenter);
    }
}

void WindowState::save() const
{
    changeSettings(fileString(file_.toStdString()), [this](QSettings& settings) {
        settings.setValue(QStringLiteral("window/geometry"), window_.saveGeometry());
        settings.setValue(QStringLiteral("window/columns"), window_.columns()->saveState());
        settings.setValue(QStringLiteral("search/explained"), window_.searchPane()->isExplained());
        QStringList hidden;
        for (const LibraryKind kind : window_.shownLibraries()->kindMenu()->hidden())
            hidden.append(qtText(kindName(kind)));
        settings.setValue(QStringLiteral("kinds/hidden"), hidden);
        saveLibraries(settings);
    });
}

void WindowState::saveLibraries(QSettings& settings) const
{
    std::map<fileString, LibraryState> states;
    for (const auto& [path, library] : window_.model().libraries())
        states.emplace(path, stateOf(path));
    for (const auto& [path, state] : libraries_)  // those that could not be read this time
        if (path.pathExists())
            states.emplace(path, state);
    settings.remove(QStringLiteral("libraries"));
    settings.beginWriteArray(QStringLiteral("libraries"));
    int count = 0;
    for (const auto& [path, state] : states) {
        if (state.openFolders.isEmpty() && state.current.isEmpty())
            continue;
        settings.setArrayIndex(count++);
        settings.setValue(QStringLiteral("path"), qtText(path.utf8()));
        settings.setValue(QStringLiteral("open"), state.openFolders);
        settings.setValue(QStringLiteral("current"), state.current);
    }
    settings.endArray();
}

WindowState::LibraryState WindowState::stateOf(const fileString& library) const
{
    // A library that was not read since the start, or is hidden, keeps its earlier state.
    if (const auto before = libraries_.find(library); before != libraries_.end())
        return before->second;
    LibraryState state;
    const LibraryTreeModel& model = window_.model();
    for (const QModelIndex& category : model.categories(library))
        appendOpenFolders(*window_.tree(), model, category, state.openFolders);
    const std::optional<LibraryPlace> place = model.place(window_.tree()->currentIndex());
    if (place && place->library == library) {
        const Catalog& catalog = *model.library(library)->catalog;
        state.current = place->isFolder ? folderMark + joinedNames(catalog, place->index)
                                        : itemMark + qtText(catalog.items[place->index].uniqueId);
    }
    return state;
}

}  // namespace VelkHost
