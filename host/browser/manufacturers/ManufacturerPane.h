#pragma once

#include "host/browser/manufacturers/ManufacturerStore.h"

#include <QWidget>

#include <optional>

class QFormLayout;
class QLabel;
class QPushButton;
class QUrl;

namespace VelkHost {

/// The http or https address that a text means; empty when it means none.
QUrl webAddress(const QString& text);
/// The mailto: address of an e-mail address; empty for any other text.
QUrl mailAddress(const QString& text);

/// The card of the manufacturer who made the item that is shown: how to reach them, and their logo. Hidden while
/// no manufacturer is known.
class ManufacturerPane : public QWidget
{
    Q_OBJECT

public:
    explicit ManufacturerPane(ManufacturerStore& store, QWidget* parent = nullptr);

    /// Shows the manufacturer of an item; without a library it shows none. Keeps the library until the next call.
    void show(std::shared_ptr<const Catalog> library, std::size_t item);

    /// The card shown; null when none is.
    const ManufacturerCard* card() const;

    /// Sets how many of the screen's pixels the logo gets for one of the pane's.
    void setPixelRatio(qreal ratio);

    /// Opens the editor of the card shown.
    void edit();

Q_SIGNALS:
    /// Another card is shown, or none.
    void shown();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Row
    {
        QLabel* title;
        QLabel* value;
    };

    Row addRow(QFormLayout* form, const char* objectName);
    void buildLayout();
    void showCard();
    void showLogo();
    void retranslate();

    ManufacturerStore& store_;
    std::shared_ptr<const Catalog> library_;
    std::size_t item_ = 0;
    std::optional<long> id_;
    qreal pixelRatio_ = 1;
    QLabel* const title_;
    QLabel* const logo_;
    QLabel* const name_;
    QLabel* const withdrawn_;
    QPushButton* const edit_;
    Row phone_{};
    Row fax_{};
    Row email_{};
    Row url_{};
};

}  // namespace VelkHost
