#include "host/browser/search/SyntaxHelp.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include <utility>

namespace VelkHost {
namespace {

constexpr int textWidth = 640;  // most examples then take one line

}  // namespace

SyntaxHelp::SyntaxHelp(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("syntaxHelp"));
    setWindowTitle(tr("Search Syntax"));
    auto* const label = new QLabel(text());
    label->setObjectName(QStringLiteral("syntaxText"));
    label->setTextFormat(Qt::RichText);
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(buttons);
}

QString SyntaxHelp::text()
{
    const std::pair<QString, QString> rows[] = {
        {tr("office chair"), tr("both words, anywhere and in any order")},
        {tr("\"office chair\""), tr("the two words as they stand, one after the other")},
        {tr("chair OR table"), tr("either of the two; \"|\" does the same")},
        {tr("chair -red"), tr("chair, but not red; \"NOT red\" does the same")},
        {tr("(desk OR table) oak"), tr("oak, with desk or with table")},
        {tr("chair -(red OR blue)"), tr("chair, and neither red nor blue")},
    };
    QString html = QStringLiteral("<table cellspacing=\"6\">");
    for (const auto& [typed, finds] : rows)
        html +=
            QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>").arg(typed.toHtmlEscaped(), finds.toHtmlEscaped());
    return html + QStringLiteral("</table><p>%1</p>")
                      .arg(tr("Upper and lower case make no difference, but operators are capitals. A word is "
                              "found inside longer words, too.")
                               .toHtmlEscaped());
}

}  // namespace VelkHost
