#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace VelkHost {

/// The language of the window, as long as the object lives: its texts and those of Qt, and how numbers are
/// written. Made after the application object and before the window.
class Translations
{
public:
    /// The codes of the languages that the window speaks, such as "de"; sorted.
    static QStringList languages();

    /// `language` is one of languages(). When it is empty, it is the first of them that the system's user prefers,
    /// or English.
    explicit Translations(const QString& language = {});
    /// The texts and numbers are English again.
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
