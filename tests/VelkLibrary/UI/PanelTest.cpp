#include "VelkLibrary/UI/PanelTest.h"

#include "support/Numbers.h"

#include <QBoxLayout>
#include <QLayout>

#include <optional>
#include <utility>

namespace test {

PanelTest::PanelTest()
    : texts_{{textNumber::percentage, U"%1%"},
             {textNumber::amounts, U"%1% of %2%"},
             {textNumber::amountsToolTip, U"tip of the amounts"},
             {textNumber::barOnlyToolTip, U"tip of the bar"},
             {textNumber::percentageToolTip, U"tip of the percentage"}}
{
    auto* const column = new QVBoxLayout(&window_);
    splitter_ = new QSplitter(Qt::Vertical);
    splitter_->setObjectName(QStringLiteral("libMainSplitter"));
    splitter_->addWidget(new QWidget);
    column->addWidget(splitter_);
    window_.resize(600, 400);
    installDisplayType(displayType::barOnly);
}

PanelTest::~PanelTest()
{
    Application::deliverEvents();
}

void PanelTest::installDisplayType(std::any value)
{
    Velk::HostServices host = services();
    host.preferences = {{preference::progressDisplay, "display type", std::move(value)}};
    host.preferenceChanged = [this](std::size_t number, const std::any& stored) {
        if (number == preference::progressDisplay)
            storedDisplayTypes_.push_back(stored);
    };
    host.resourceString = [this](unsigned int id) -> std::optional<std::u32string> {
        const auto found = texts_.find(id);
        return found == texts_.end() ? std::nullopt : std::optional(found->second);
    };
    Velk::installHost(std::move(host));
}

void PanelTest::makePanel(int displayType)
{
    installDisplayType(displayType);
    panel_ = LibraryProgressPanel::create(&window_);
}

QLabel& PanelTest::sideLabel(int position) const
{
    return *qobject_cast<QLabel*>(panel_->layout()->itemAt(position)->widget());
}

std::string PanelTest::labelText() const
{
    return sideLabel(0).text().toStdString();
}

std::string PanelTest::rangeText() const
{
    return sideLabel(2).text().toStdString();
}

}  // namespace test
