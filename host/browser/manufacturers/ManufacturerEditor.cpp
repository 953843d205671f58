#include "host/browser/manufacturers/ManufacturerEditor.h"

#include "host/support/QtText.h"

#include <VelkCommon/Files/PathUtils.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace VelkHost {
namespace {

constexpr int fieldWidth = 260;

}  // namespace

ManufacturerEditor::ManufacturerEditor(ManufacturerStore& store, const ManufacturerCard& card, QWidget* parent)
    : QDialog(parent),
      store_(store),
      card_(card),
      deleted_(new QCheckBox(tr("Wi&thdrawn"))),
      fields_(new QWidget),
      problem_(new QLabel),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("manufacturerEditor"));
    setWindowTitle(tr("Edit Card"));
    auto* const form = new QFormLayout(fields_);
    form->setContentsMargins(0, 0, 0, 0);
    name_ = addLine(form, tr("&Name"), "cardName", card.name);
    url_ = addLine(form, tr("&Web address"), "cardUrl", card.url);
    phone_ = addDefaultLine(form, tr("&Phone"), "cardPhone", card.phone);
    fax_ = addDefaultLine(form, tr("&Fax"), "cardFax", card.fax);
    email_ = addDefaultLine(form, tr("&E-mail"), "cardEmail", card.email);
    logo_ = addLine(form, tr("&Logo's file name"), "cardLogo", card.logo);
    logo_->setToolTip(tr("The file is kept in %1")
                          .arg(qtText(PathUtils::getObject().getManufacturerDataPath().utf8()))
                          .toHtmlEscaped());
    buildLayout(form);
    connect(&store_, &ManufacturerStore::edited, this, [this] {
        if (saving_)
            QDialog::accept();
    });
    connect(&store_, &ManufacturerStore::editFailed, this, [this](const QString& reason) {
        if (saving_)
            showProblem(reason);
    });
}

QString ManufacturerEditor::DefaultLine::stored() const
{
    return isDefault->isChecked() ? QStringLiteral("default") : text->text();
}

QLineEdit* ManufacturerEditor::addLine(QFormLayout* form, const QString& title, const char* objectName,
                                       const QString& text)
{
    auto* const line = new QLineEdit(text);
    line->setObjectName(QString::fromLatin1(objectName));
    line->setAccessibleName(QString(title).remove(u'&'));
    line->setMinimumWidth(fieldWidth);
    line->setCursorPosition(0);
    form->addRow(title, line);
    return line;
}

ManufacturerEditor::DefaultLine ManufacturerEditor::addDefaultLine(QFormLayout* form, const QString& title,
                                                                   const char* objectName,
                                                                   const ManufacturerCard::Line& given)
{
    const DefaultLine line{addLine(form, title, objectName, given.isDefault ? QString() : given.stored),
                           new QCheckBox(tr("Use the default text"))};
    line.isDefault->setObjectName(line.text->objectName() + QStringLiteral("Default"));
    line.isDefault->setAccessibleName(tr("%1: use the default text").arg(line.text->accessibleName()));
    connect(line.isDefault, &QCheckBox::toggled, line.text, [this, text = line.text](bool isDefault) {
        text->setEnabled(!isDefault);
        text->setPlaceholderText(isDefault ? store_.book().defaultText() : QString());
        if (isDefault)
            text->clear();
    });
    line.isDefault->setChecked(given.isDefault);
    form->addRow(QString(), line.isDefault);
    return line;
}

void ManufacturerEditor::buildLayout(QFormLayout* form)
{
    deleted_->setObjectName(QStringLiteral("cardDeleted"));
    deleted_->setChecked(card_.deleted);
    form->addRow(QString(), deleted_);
    problem_->setObjectName(QStringLiteral("cardProblem"));
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    problem_->hide();
    buttons_->setObjectName(QStringLiteral("cardButtons"));
    connect(buttons_, &QDialogButtonBox::accepted, this, &ManufacturerEditor::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &ManufacturerEditor::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(fields_);
    layout->addWidget(problem_);
    layout->addStretch(1);
    layout->addWidget(buttons_);
}

void ManufacturerEditor::accept()
{
    const CardEdit edit = changes();
    if (edit.empty()) {
        QDialog::accept();
        return;
    }
    setSaving(true);
    store_.edit(card_.id, edit);
}

CardEdit ManufacturerEditor::changes() const
{
    CardEdit edit;
    const auto add = [&](const char* field, const QString& now, const QString& before) {
        if (now != before)
            edit.texts[field] = now.toStdString();
    };
    add("name", name_->text(), card_.name);
    add("url", url_->text(), card_.url);
    add("phone", phone_.stored(), card_.phone.stored);
    add("fax", fax_.stored(), card_.fax.stored);
    add("email", email_.stored(), card_.email.stored);
    add("logo", logo_->text(), card_.logo);
    if (deleted_->isChecked() != card_.deleted)
        edit.deleted = deleted_->isChecked();
    return edit;
}

void ManufacturerEditor::setSaving(bool saving)
{
    saving_ = saving;
    fields_->setEnabled(!saving);
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(!saving);
}

void ManufacturerEditor::showProblem(const QString& reason)
{
    setSaving(false);
    problem_->setText(reason);
    problem_->show();
}

}  // namespace VelkHost
