#pragma once

#include "host/browser/filters/FilterStore.h"

#include <QComboBox>
#include <QMenu>

class QActionGroup;

namespace VelkHost {

/// The filters in a box, for use beside the search box.
class FilterBox : public QComboBox
{
    Q_OBJECT

public:
    explicit FilterBox(QWidget* parent = nullptr);

    void setState(const FilterState& state);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
};

/// The filters in a menu, as many as there are keys for, and what can be done with them.
class FilterMenu : public QMenu
{
    Q_OBJECT

public:
    explicit FilterMenu(QWidget* parent = nullptr);

    void setState(const FilterState& state);

Q_SIGNALS:
    /// The user asks to put an entry of FilterState in force.
    void chosen(int entry);
    /// The user asks for the filters that the menu leaves out.
    void moreAsked();
    void editAsked();
    void mergeAsked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QActionGroup* const entries_;
    QAction* const more_;
    QAction* const separator_;
    QAction* const edit_;
    QAction* const merge_;
};

}  // namespace VelkHost
