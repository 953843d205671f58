#pragma once

#include "host/browser/filters/FilterStore.h"

#include <QComboBox>
#include <QMenu>

class QActionGroup;

namespace VelkHost {

/// The filters in a box, for beside the search.
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

/// The filters in a menu, as many as have a key of their own, and what can be done with them.
class FilterMenu : public QMenu
{
    Q_OBJECT

public:
    explicit FilterMenu(QWidget* parent = nullptr);

    void setState(const FilterState& state);

Q_SIGNALS:
    /// An entry of FilterState is to be put in force.
    void chosen(int entry);
    /// The others are to be offered.
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
