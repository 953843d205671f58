#pragma once

#include "host/browser/manufacturers/ManufacturerStore.h"

#include <QWidget>

#include <optional>

class QFormLayout;
class QLabel;
class QPushButton;
class QUrl;

namespace VelkHost {

/// The address behind a text: http and https only; empty for what is none.
QUrl webAddress(const QString& text);
/// The mailto: address; empty for what is no e-mail address.
QUrl mailAddress(const QString& text);

/// The card of who made the item that is shown: how to reach them, and their logo. Hidden while nobody is
/// known.
class ManufacturerPane : public QWidget
{
    Q_OBJECT

public:
    explicit ManufacturerPane(ManufacturerStore& store, QWidget* parent = nullptr);

    /// Shows the manufacturer of an item; nobody without a library. Keeps the library until the next call.
    void show(std::shared_ptr<const Catalog> library, std::size_t item);

    /// The card shown; null for none.
    const ManufacturerCard* card() const;

    /// How many of the screen's pixels the logo has for one of the pane's.
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
