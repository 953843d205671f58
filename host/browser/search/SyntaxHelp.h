#pragma once

#include <QDialog>

namespace VelkHost {

/// Examples of what can be typed into the search box.
class SyntaxHelp : public QDialog
{
    Q_OBJECT

public:
    explicit SyntaxHelp(QWidget* parent = nullptr);

private:
    static QString text();
};

}  // namespace VelkHost
