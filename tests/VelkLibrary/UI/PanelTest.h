#pragma once

#include <VelkLibrary/UI/LibraryProgressPanel.h>
#include <VelkLibrary/UI/ProgressGauge.h>
#include <VelkLibrary/UI/ProgressText.h>

#include "VelkLibrary/UI/Application.h"
#include "support/TestHost.h"

#include <QLabel>
#include <QPointer>
#include <QSplitter>
#include <QWidget>

#include <any>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// A browser's window that can hold a panel, and a host with texts that are easy to recognise: "25" for a
/// percentage, "1 of 2" for amounts, "tip of the amounts" for a tooltip.
class PanelTest : public TestHost
{
protected:
    PanelTest();
    ~PanelTest() override;

    /// Installs the host again, with that value (of any type, or none) in the preference for the display type.
    void installDisplayType(std::any value);

    /// Makes the panel with this display type, in a window that is not shown.
    void makePanel(int displayType);

    LibraryProgressPanel& panel() const { return *panel_; }
    ProgressGauge& gauge() const { return *panel_->findChild<ProgressGauge*>(); }
    ProgressText& text() const { return *panel_->findChild<ProgressText*>(); }
    QLabel& sideLabel(int position) const;  ///< 0: what is being done; 2: how much
    std::string labelText() const;
    std::string rangeText() const;

    /// Calls a slot of `object` at once, by name.
    template <typename... Arguments>
    static void call(QObject& object, const char* slot, Arguments... arguments)
    {
        EXPECT_TRUE(QMetaObject::invokeMethod(&object, slot, Qt::DirectConnection, arguments...)) << slot;
    }

    QWidget window_;
    QSplitter* splitter_ = nullptr;
    std::map<unsigned int, std::u32string> texts_;  ///< the host's
    std::vector<std::any> storedDisplayTypes_;      ///< what the host was told of that preference

private:
    QPointer<LibraryProgressPanel> panel_;
};

}  // namespace test
