#include "ManufacturerWindow.h"

#include <QImage>

namespace test {

ManufacturerWindow::ManufacturerWindow()
{
    install("Doors", VelkHost::LibraryKind::Core,
            {{"d1", 0, "A door", "oak, Acme Doors", "", {}},
             {"d2", 0, "B door", "oak", "", {}},
             {"d3", 0, "C door", "Other, Manufacturer", "", {}}});
}

void ManufacturerWindow::haveCard(long id, const std::map<std::string, std::string>& texts, bool deleted)
{
    VelkHost::CardEdit edit;
    edit.make = true;
    edit.texts = texts;
    edit.deleted = deleted;
    VelkHost::editCard(id, edit);
}

void ManufacturerWindow::writeLogo(const std::u32string& name, int width, int height) const
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    ASSERT_TRUE(image.save(QString::fromStdString(data(name).utf8()), "PNG"));
}

VelkHost::ManufacturerPane& ManufacturerWindow::paneOf(std::size_t item, const VelkHost::BrowserOptions& options)
{
    open(options);
    select("Doors", item);
    return pane();
}

std::optional<std::string> ManufacturerWindow::shownText(const char* objectName)
{
    const auto* const label = find<QLabel>(objectName);
    return label->isVisible() ? std::optional(label->text().toStdString()) : std::nullopt;
}

}  // namespace test
