#pragma once

#include "host/browser/filters/FilteredWindow.h"

#include "host/browser/manufacturers/ManufacturerPane.h"
#include "host/installation/Manufacturers.h"

#include <QLabel>

#include <optional>
#include <string>

namespace test {

/// A window on a library "Doors" with one item of each of several manufacturers, and on cards made by the tests.
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
    VelkHost::ManufacturerPane& paneOf(std::size_t item, const VelkHost::BrowserOptions& options = {});
    VelkHost::ManufacturerPane& pane() { return *find<VelkHost::ManufacturerPane>("manufacturerPane"); }
    /// What a label of the pane shows; empty when it is hidden.
    std::optional<std::string> shownText(const char* objectName);
};

}  // namespace test
