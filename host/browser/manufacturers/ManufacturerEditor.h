#pragma once

#include "host/browser/manufacturers/ManufacturerStore.h"

#include <QDialog>

class QCheckBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace VelkHost {

/// A manufacturer's card, to be changed. Stays open until the change is saved.
class ManufacturerEditor : public QDialog
{
    Q_OBJECT

public:
    ManufacturerEditor(ManufacturerStore& store, const ManufacturerCard& card, QWidget* parent = nullptr);

    void accept() override;

private:
    /// A text that may stand for the default text.
    struct DefaultLine
    {
        QLineEdit* text = nullptr;
        QCheckBox* isDefault = nullptr;
        QString stored() const;
    };

    QLineEdit* addLine(QFormLayout* form, const QString& title, const char* objectName, const QString& text);
    DefaultLine addDefaultLine(QFormLayout* form, const QString& title, const char* objectName,
                               const ManufacturerCard::Line& line);
    void buildLayout(QFormLayout* form);
    CardEdit changes() const;
    void setSaving(bool saving);
    void showProblem(const QString& reason);

    ManufacturerStore& store_;
    const ManufacturerCard card_;
    QLineEdit* name_ = nullptr;
    QLineEdit* url_ = nullptr;
    QLineEdit* logo_ = nullptr;
    DefaultLine phone_;
    DefaultLine fax_;
    DefaultLine email_;
    QCheckBox* const deleted_;
    QWidget* const fields_;
    QLabel* const problem_;
    QDialogButtonBox* const buttons_;
    bool saving_ = false;
};

}  // namespace VelkHost
