#include "DrivenWindow.h"

#include "BrowserTest.h"
#include "LabelPicture.h"

#include "host/browser/jobs/LibraryJobs.h"
#include "host/browser/tree/ItemDrag.h"
#include "host/catalog/SampleThumbnail.h"
#include "host/service/Site.h"

#include <VelkLibrary/UI/LibraryProgressPanel.h>

#include <QApplication>
#include <QChildEvent>
#include <QDrag>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPixmap>
#include <QTreeView>
#include <QUrl>
#include <QWindow>

#include <optional>
#include <utility>

namespace test {
namespace {

using VelkHost::Catalog;
using VelkHost::Folder;
using VelkHost::Item;

constexpr int chairCount = 40;

Catalog furniture(const std::string& chairs)
{
    const std::string picture = VelkHost::drawThumbnail("r8,8,80,80 l0,0,96,96");
    Catalog catalog;
    catalog.id = "furniture";
    catalog.name = "Furniture library";
    catalog.kind = VelkHost::LibraryKind::Core;
    catalog.folders = {{Folder::noParent, "Furniture"}, {0, "Seating"}, {1, "Chairs"}, {0, "Tables"}};
    for (int i = 0; i < chairCount; ++i)
        catalog.items.push_back(
            {"chair#" + std::to_string(i), 2, chairs + ' ' + std::to_string(100 + i), "oak, Acme Doors", picture, {}});
    catalog.items.push_back({"chair", 2, "Chair", "red, Acme Doors", picture, {}});
    catalog.items.push_back({"table", 3, "Table", "goes with a chair", picture, {}});
    return catalog;
}

Catalog garden()
{
    Catalog catalog;
    catalog.id = "garden";
    catalog.name = "Garden library";
    catalog.kind = VelkHost::LibraryKind::Core;
    catalog.folders = {{Folder::noParent, "Outdoors"}};
    catalog.items = {{"bench", 0, "Bench and chair", "", "", {}}, {"tree", 0, "Tree", "", "", {}}};
    return catalog;
}

constexpr const char* cards = R"({"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "Ask us",
    "Manufacturer_7": {"Id": 7, "Last_Modified": "20260301T140559", "Name": "Acme Doors", "Phone": "default",
                       "Url": "https://acme.example", "Logo": "acme.png", "Deleted": false}})";

/// Sees what a widget hands to the system to be dragged. The platform without a screen takes that and drags nothing.
class DragWatch : public QObject
{
public:
    explicit DragWatch(QObject* source) { source->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded)
            static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
        const auto* const drag = qobject_cast<const QDrag*>(watched);
        if (event->type() == QEvent::DeferredDelete && drag != nullptr) {  // it is over
            const QMimeData& data = *drag->mimeData();
            dragged = DraggedItem{data.text(), data.data(QString::fromLatin1(VelkHost::itemMimeType)), data.hasImage()};
        }
        return false;
    }

    std::optional<DraggedItem> dragged;
};

template <typename Event>
bool takes(QWidget* over, Event event)
{
    event.ignore();
    QApplication::sendEvent(over, &event);
    return event.isAccepted();
}

}  // namespace

DrivenWindow::DrivenWindow()
{
    writeFileDeep(input(U"manufacturer_data.json"), cards);
    writeFileDeep(input(U"logos/acme.png"), VelkHost::drawThumbnail("e8,8,80,80"));
    publishLibraries("Chair");
    VelkHost::ServiceOptions options;
    options.site = site();
    options.served = [this](const VelkHost::ServedRequest&) {
        if (held_)
            gate_.wait();
    };
    service_ = std::make_unique<VelkHost::SiteService>(options);
}

DrivenWindow::~DrivenWindow()
{
    goOn();
}

// ---- The publisher and the service ---------------------------------------------------------------

void DrivenWindow::publishLibraries(const std::string& chairs)
{
    for (const auto& [name, catalog] :
         {std::pair(U"core/furniture.calib", furniture(chairs)), std::pair(U"core/garden.calib", garden())})
        writeFileDeep(input(name), catalogFileBytes(catalog));
    publish();
}

void DrivenWindow::damage(const std::string& library)
{
    damagedFile_ = VelkHost::storedFile(site(), table().libraries.at(library).stored);
    goodBytes_ = readFile(damagedFile_);
    writeFile(damagedFile_, std::string(goodBytes_.size(), 'x'));
}

void DrivenWindow::repair()
{
    writeFile(damagedFile_, goodBytes_);
}

void DrivenWindow::holdService()
{
    held_ = true;
}

void DrivenWindow::goOn()
{
    held_ = false;
    gate_.openForGood();
}

// ---- The user's hands ----------------------------------------------------------------------------

// When a dialog or menu has closed, the platform without a screen gives the keys to no window.
void DrivenWindow::press(int key, Qt::KeyboardModifiers modifiers)
{
    if (QApplication::focusWidget() == nullptr) {
        window().activateWindow();
        eventually([] { return QApplication::focusWidget() != nullptr; });
    }
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

void DrivenWindow::pressTimes(int times, int key)
{
    for (int i = 0; i < times; ++i)
        press(key);
}

void DrivenWindow::type(const char* text)
{
    typeText(QApplication::focusWidget(), QString::fromUtf8(text));
}

void DrivenWindow::takeFromMenu(Qt::Key menu, Qt::Key entry)
{
    press(menu, Qt::AltModifier);
    eventually([] { return QApplication::activePopupWidget() != nullptr; });
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), entry);
    eventually([] { return QApplication::activePopupWidget() == nullptr; });
}

DraggedItem DrivenWindow::dragOut(QTreeView& view, const QModelIndex& row)
{
    DragWatch watch(&view);
    QWindow* const screen = window().windowHandle();
    const QPoint start = view.viewport()->mapTo(&window(), view.visualRect(row).center());
    QTest::mousePress(screen, Qt::LeftButton, {}, start);
    QTest::mouseMove(screen, start + QPoint(1, 0));
    QTest::mouseMove(screen, start + QPoint(2 * QApplication::startDragDistance(), 0));
    eventually([&] { return watch.dragged.has_value(); });
    QTest::mouseRelease(screen, Qt::LeftButton, {}, start);
    return watch.dragged.value_or(DraggedItem());
}

void DrivenWindow::dropFile(const fileString& file)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file.utf8()))});
    const QPoint place(50, 200);
    EXPECT_TRUE(takes(&window(), QDragEnterEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier)));
    EXPECT_TRUE(find<QWidget>("dropHighlight")->isVisible());
    EXPECT_TRUE(takes(&window(), QDropEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier)));
}

// ---- The user's eyes -----------------------------------------------------------------------------

QTreeView& DrivenWindow::hits()
{
    return *window().searchPane()->view();
}

std::string DrivenWindow::seen(const char* label)
{
    const auto* const found = find<QLabel>(label);
    return found->isVisible() ? found->text().toStdString() : "(hidden)";
}

bool DrivenWindow::showsPicture(const char* label)
{
    const auto* const found = find<QLabel>(label);
    return found->isVisible() && !labelPicture(*found).isNull();
}

bool DrivenWindow::isPanelSeen()
{
    const auto* const panel = window().findChild<LibraryProgressPanel*>();
    return panel != nullptr && panel->isVisible();
}

std::string DrivenWindow::currentPath()
{
    QStringList names;
    for (QModelIndex index = tree().currentIndex(); index.isValid(); index = index.parent())
        names.prepend(index.data().toString());
    return names.join(u'/').toStdString();
}

QModelIndex DrivenWindow::indexOf(const std::string& path)
{
    QModelIndex index;
    for (const QString& name : QString::fromStdString(path).split(u'/')) {
        const QAbstractItemModel& model = *tree().model();
        const QModelIndexList matches =
            model.match(model.index(0, 0, index), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        if (matches.isEmpty())
            return {};
        index = matches.front();
    }
    return index;
}

bool DrivenWindow::isOpen(const std::string& path)
{
    return tree().isExpanded(indexOf(path));
}

QStringList DrivenWindow::found()
{
    return resultRows(*hits().model());
}

void DrivenWindow::waitForJob()
{
    eventually([this] { return !window().jobs().isRunning() && !window().isReading(); });
}

void DrivenWindow::waitForHits()
{
    eventually([this] { return hasSearched(window()); });
}

}  // namespace test
