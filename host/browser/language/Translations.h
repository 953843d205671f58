#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace VelkHost {

/// The language of the window, as long as this object lives: its texts and those of Qt, and how numbers are
/// written. To be made after the application object and before the window.
class Translations
{
public:
    /// The codes of the languages that the window speaks, such as "de"; sorted.
    static QStringList languages();

    /// `language` is one of languages(). When it is empty, the first of them that the user prefers in the system's
    /// settings counts, or English.
    explicit Translations(const QString& language = {});
    /// Makes the texts and numbers English again.
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    const QString& language() const { return language_; }

private:
    QString language_;
    QTranslator window_;
    QTranslator qt_;
};

}  // namespace VelkHost
