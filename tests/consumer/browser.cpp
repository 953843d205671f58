// What an application with a window adds: the tree's nodes and the panel that shows a job's progress.

#include "Receiver.h"

#include <VelkCommon/Version.h>
#include <VelkLibrary/UI/LibraryProgressPanel.h>
#include <VelkLibrary/UI/TreeItemData.h>

#include <QApplication>
#include <QMainWindow>
#include <QSplitter>
#include <QStandardItemModel>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);

    QStandardItemModel tree;
    const fileString database(std::u32string(U"/tmp/libraries/chairs.calib"));
    tree.appendRow(new Library::TreeItemData(2, database, U"Office Chair Black"));
    tree.appendRow(new Library::TreeItemData(1, database, U"Armchair"));
    tree.sort(0);

    QMainWindow window;
    auto* const splitter = new QSplitter(Qt::Vertical, &window);
    splitter->setObjectName(QStringLiteral("libMainSplitter"));
    LibraryProgressPanel* const panel = LibraryProgressPanel::create(&window);
    panel->onSetText("Checking chairs.calib");

    static_assert(VELK_VERSION >= VELK_VERSION_CHECK(0, 1, 0));
    Receiver receiver;
    LibraryCatalogUpdate::UpdateData end;
    end.outcome = LibraryCatalogUpdate::UpToDate;
    QMetaObject::invokeMethod(&receiver, "closeCatalogUpdateEvent", Qt::DirectConnection,
                              Q_ARG(LibraryCatalogUpdate::UpdateData, end));
    if (receiver.outcome != LibraryCatalogUpdate::UpToDate)
        return 1;

    const bool sorted = tree.item(0)->text() == QStringLiteral("Armchair");
    return sorted && splitter->indexOf(panel) == 0 ? 0 : 1;
}
