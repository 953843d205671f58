#pragma once

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

namespace test {

/// A text of the window as a file of translations has it.
struct TranslatedText
{
    QStringList translations;  // several when the text has plural forms
    bool hasPlural = false;
    bool isFinished = true;
};

/// The texts by context and, with what distinguishes equal ones, by source.
using TranslatedTexts = std::map<std::pair<QString, QString>, TranslatedText>;

/// The source's path, or that of a folder of it.
QString sourcePath(const QString& relative);
/// Where the translations into a language are.
QString translationFile(const QString& language);
/// What a file of translations holds; fails the test when it cannot be read.
TranslatedTexts readTranslations(const QString& path);

}  // namespace test
