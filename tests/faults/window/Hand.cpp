#include "Hand.h"

#include "host/browser/filters/ShownLibraries.h"
#include "host/browser/jobs/LibraryJobs.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QSplitter>
#include <QStatusBar>
#include <QTreeView>
#include <QUrl>

#include <string>

namespace faults {
namespace {

constexpr int patience = 15'000;  // milliseconds; less than the harness has
constexpr int narrow = 450;       // of the tree, in pixels
constexpr QRect frame(40, 40, 900, 600);

// The whole texts with which the window tells that it has done what it was asked for.
constexpr const char* imported = "“.*” was imported\\.";
constexpr const char* updated =
    "“.*” was updated\\.|[0-9]+ libraries were updated\\.|Files that libraries refer to were updated\\.|All "
    "libraries are up to date\\.";
constexpr const char* merged = "[0-9]+ filters? added: .*\\.|No filter was added\\..*";
constexpr const char* cardsUpdated =
    "Manufacturers: [0-9]+ new, [0-9]+ changed, [0-9]+ gone\\.|The manufacturers are up to date\\.|The service has "
    "nothing newer about the manufacturers\\.";

template <typename Event>
void send(QObject& to, Event event)
{
    QCoreApplication::sendEvent(&to, &event);
}

void press(QWidget& widget, QEvent::Type type, const QPoint& place)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    send(widget, QMouseEvent(type, place, widget.mapToGlobal(place), Qt::LeftButton, held, Qt::NoModifier));
}

}  // namespace

Hand::Hand(VelkHost::BrowserWindow& window) : window_(window)
{
    connect(window.statusBar(), &QStatusBar::messageChanged, this, [this](const QString& text) {
        if (!text.isEmpty())
            said_.append(text);
    });
}

Verdict Hand::work(const QStringList& words)
{
    const std::map<QString, std::function<Verdict()>> works{
        {QStringLiteral("import"), [&] { return importFile(words.value(1)); }},
        {QStringLiteral("update"), [&] { return update(); }},
        {QStringLiteral("add filter"), [&] { return addFilter(words.value(1), words.value(2)); }},
        {QStringLiteral("remove filter"), [&] { return removeFilter(words.value(1)); }},
        {QStringLiteral("use filter"), [&] { return useFilter(words.value(1)); }},
        {QStringLiteral("merge filters"), [&] { return mergeFilters(words.value(1)); }},
        {QStringLiteral("edit card"), [&] { return editCard(words.value(1), words.value(2), words.value(3)); }},
        {QStringLiteral("update cards"), [&] { return updateCards(); }},
        {QStringLiteral("settings"), [&] { return changeSettings(); }},
        {QStringLiteral("look"), [] { return Verdict::Done; }}};
    Verdict verdict = Verdict::Silent;
    try {
        settle();
        const auto found = works.find(words.value(0));
        if (found == works.end())
            throw Unable("there is no such work");
        window_.statusBar()->clearMessage();  // it would not tell the same again
        before_ = said_.size();
        verdict = found->second();
        settle();
    } catch (const WaitedInVain& reason) {
        verdict = Verdict::Silent;
        said_.append(QString::fromUtf8(reason.what()));
    } catch (const Unable& reason) {  // for want of what the window has told to be missing
        verdict = said_.isEmpty() ? Verdict::Silent : Verdict::Failed;
        said_.append(QString::fromUtf8(reason.what()));
    }
    return close() ? verdict : Verdict::Silent;
}

// ---- What is done ----------------------------------------------------------------------------------

Verdict Hand::importFile(const QString& file)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath())});
    const QPoint place(50, 200);
    send(window_, QDragEnterEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
    send(window_, QDropEvent(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier));
    if (auto* const replace = window_.findChild<QPushButton*>(QStringLiteral("replaceButton")))
        replace->click();
    settle();
    const Verdict verdict = verdictOf(imported);
    if (auto* const box = window_.findChild<QMessageBox*>(QStringLiteral("problemBox"))) {
        said_.append(box->text());
        return Verdict::Failed;
    }
    return verdict;
}

Verdict Hand::update()
{
    triggerAction("updateAction");
    settle();
    return verdictOf(updated);
}

Verdict Hand::addFilter(const QString& name, const QString& library)
{
    triggerAction("editFiltersAction");
    auto& editor = dialog<QDialog>("filterEditor");
    auto& list = find<QListWidget>("filterList", &editor);
    const QList<QListWidgetItem*> there = list.findItems(name, Qt::MatchExactly);
    if (there.isEmpty()) {
        find<QPushButton>("addFilterButton", &editor).click();
        auto* const line = list.viewport()->findChild<QLineEdit*>();
        if (line == nullptr)
            throw Unable("the new filter's name cannot be edited");
        line->setText(name);
        QTest::keyClick(line, Qt::Key_Return);
        waitFor([&] { return !list.findItems(name, Qt::MatchExactly).isEmpty(); }, "the filter's name");
    } else {
        list.setCurrentItem(there.front());
    }
    QAbstractItemModel& libraries = *find<QListView>("filterLibraries", &editor).model();
    const QModelIndexList rows = libraries.match(libraries.index(0, 0), Qt::ToolTipRole, library, 1, Qt::MatchExactly);
    if (rows.isEmpty())
        throw Unable("there is no such library");
    libraries.setData(rows.front(), Qt::Checked, Qt::CheckStateRole);
    acceptFilters(editor);
    return verdictOfFilters([&] { return lists(name); });
}

Verdict Hand::removeFilter(const QString& name)
{
    triggerAction("editFiltersAction");
    auto& editor = dialog<QDialog>("filterEditor");
    auto& list = find<QListWidget>("filterList", &editor);
    const QList<QListWidgetItem*> there = list.findItems(name, Qt::MatchExactly);
    if (there.isEmpty()) {
        editor.reject();
        said_.append(QStringLiteral("there is no such filter"));
        return Verdict::NoSuch;
    }
    list.setCurrentItem(there.front());
    find<QPushButton>("removeFilterButton", &editor).click();
    acceptFilters(editor);
    return verdictOfFilters([&] { return !lists(name); });
}

Verdict Hand::useFilter(const QString& name)
{
    const auto& box = find<QComboBox>("filterBox");
    const int entry = box.findText(name);
    if (entry < 0)
        throw Unable("there is no such filter");
    const std::string action = "filterAction" + std::to_string(entry);
    triggerAction(action.c_str());
    settle();
    return verdictOfFilters([&] { return box.currentText() == name; });
}

Verdict Hand::mergeFilters(const QString& file)
{
    triggerAction("mergeFiltersAction");
    auto& dialog = find<QFileDialog>("filterFileDialog");
    dialog.selectFile(QFileInfo(file).absoluteFilePath());
    QMetaObject::invokeMethod(&dialog, "accept");
    settle();
    return verdictOf(merged);
}

Verdict Hand::editCard(const QString& manufacturer, const QString& field, const QString& text)
{
    selectItemOf(manufacturer);
    triggerAction("editManufacturerAction");
    auto& editor = dialog<QDialog>("manufacturerEditor");
    const auto& problem = find<QLabel>("cardProblem", &editor);
    find<QLineEdit>(field.toLatin1().constData(), &editor).setText(text);
    bool isClosed = false;
    connect(&editor, &QDialog::accepted, this, [&isClosed] { isClosed = true; });
    find<QDialogButtonBox>("cardButtons", &editor).button(QDialogButtonBox::Ok)->click();
    waitFor([&] { return isClosed || problem.isVisible(); }, "the editor's end");
    if (isClosed)
        return Verdict::Done;
    said_.append(problem.text());
    editor.reject();
    return Verdict::Failed;
}

Verdict Hand::updateCards()
{
    triggerAction("refreshManufacturersAction");
    settle();
    return verdictOf(cardsUpdated);
}

Verdict Hand::changeSettings()
{
    window_.setGeometry(frame);
    settle();
    QWidget* const handle = window_.columns()->handle(1);
    const QPoint grip = handle->rect().center();
    const QPoint target = grip + QPoint(narrow - handle->x(), 0);
    press(*handle, QEvent::MouseButtonPress, grip);
    press(*handle, QEvent::MouseMove, target);
    press(*handle, QEvent::MouseButtonRelease, grip);
    if (!close())
        return Verdict::Silent;
    return window_.unsaved().isEmpty() ? Verdict::Done : Verdict::Failed;
}

// ---- How it is done --------------------------------------------------------------------------------

/// Waits until nothing is under way.
void Hand::settle()
{
    const auto isQuiet = [this] {
        return !window_.jobs().isRunning() && !window_.isReading() && !window_.manufacturers().isBusy() &&
               !window_.shownLibraries()->filters().isBusy();
    };
    waitFor(isQuiet, "quiet");
}

void Hand::waitFor(const std::function<bool()>& condition, const char* what)
{
    if (!QTest::qWaitFor(condition, patience))
        throw WaitedInVain(std::string("waited in vain for ") + what);
}

void Hand::triggerAction(const char* objectName)
{
    auto& action = find<QAction>(objectName);
    if (!action.isEnabled())
        throw Unable(std::string(objectName) + " is not enabled");
    action.trigger();
}

/// Goes through the items until one shows the manufacturer.
void Hand::selectItemOf(const QString& manufacturer)
{
    const auto& name = find<QLabel>("manufacturerName");
    for (const auto& [path, library] : window_.model().libraries())
        for (std::size_t item = 0; item < library.catalog->items.size(); ++item) {
            window_.reveal({path, false, item});
            if (name.isVisible() && name.text() == manufacturer)
                return;
        }
    throw Unable("no item shows that manufacturer");
}

void Hand::acceptFilters(QWidget& editor)
{
    auto* const button = find<QDialogButtonBox>("filterButtons", &editor).button(QDialogButtonBox::Ok);
    if (!button->isEnabled())
        throw Unable(find<QLabel>("filterProblem", &editor).text().toStdString());
    button->click();
    settle();
}

/// Whether such a text was said since the work began.
bool Hand::wasSaid(const char* pattern) const
{
    const QRegularExpression text(QRegularExpression::anchoredPattern(QString::fromUtf8(pattern)));
    return said_.indexOf(text, before_) >= 0;
}

Verdict Hand::verdictOf(const char* done) const
{
    if (wasSaid(done))
        return Verdict::Done;
    return said_.size() == before_ ? Verdict::Silent : Verdict::Failed;
}

/// Filters are saved without a word and then shown. When they are saved and cannot be read any more, the window says
/// so.
Verdict Hand::verdictOfFilters(const std::function<bool()>& isShown) const
{
    if (wasSaid("The filters cannot be read: .*"))
        return Verdict::Done;
    const Verdict verdict = verdictOf("");
    return verdict == Verdict::Silent && isShown() ? Verdict::Done : verdict;
}

bool Hand::lists(const QString& filter) const
{
    return find<QComboBox>("filterBox").findText(filter) >= 0;
}

/// A user would close the dialogs first.
bool Hand::close()
{
    for (QDialog* const open : window_.findChildren<QDialog*>())
        open->reject();
    if (window_.isVisible())
        window_.close();
    return QTest::qWaitFor([this] { return !window_.isVisible(); }, patience);
}

}  // namespace faults
