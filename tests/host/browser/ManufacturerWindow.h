#pragma once

#include "FilteredWindow.h"

#include "host/browser/makers/MakerPane.h"
#include "host/library/Manufacturers.h"

#include <QLabel>

#include <optional>
#include <string>

namespace test {

/// A window on a library "Doors" with an item of each of some makers, and on cards made by the tests.
class ManufacturerWindow : public FilteredWindow
{
protected:
    ManufacturerWindow();

    /// Makes the card of a manufacturer.
    static void haveCard(long id, const std::map<std::string, std::string>& texts, bool deleted = false);
    fileString data(const std::u32string& name) const { return folder() / U"manufacturer-data" / name; }
    /// Writes a logo of that size.
    void writeLogo(const std::u32string& name, int width, int height) const;

    /// The card's pane beside the item of that index; opens the window.
    VelkHost::MakerPane& paneOf(std::size_t item, const VelkHost::BrowserOptions& options = {});
    VelkHost::MakerPane& pane() { return *find<VelkHost::MakerPane>("makerPane"); }
    /// What a label of the pane shows; nothing when it is hidden.
    std::optional<std::string> shownText(const char* objectName);
};

}  // namespace test
