#pragma once

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

namespace test {

/// A text of the window as a translation file has it.
struct TranslatedText
{
    QStringList translations;  // several when the text has plural forms
    bool hasPlural = false;
    bool isFinished = true;
};

/// The texts by context and source; the source is followed by the comment that tells equal texts apart.
using TranslatedTexts = std::map<std::pair<QString, QString>, TranslatedText>;

/// The path of a file or folder in the source tree.
QString sourcePath(const QString& relative);
/// The path of the translations into a language.
QString translationFile(const QString& language);
/// The texts in a translation file; fails the test when it cannot be read.
TranslatedTexts readTranslations(const QString& path);

}  // namespace test
