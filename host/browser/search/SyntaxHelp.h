#pragma once

#include <QDialog>

namespace VelkHost {

/// What can be typed into the search box, by examples.
class SyntaxHelp : public QDialog
{
    Q_OBJECT

public:
    explicit SyntaxHelp(QWidget* parent = nullptr);

private:
    static QString text();
};

}  // namespace VelkHost
