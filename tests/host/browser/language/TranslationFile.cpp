#include "TranslationFile.h"

#include <QFile>
#include <QXmlStreamReader>

namespace test {
namespace {

class Reader
{
public:
    explicit Reader(QIODevice& device) : xml_(&device) {}

    TranslatedTexts read()
    {
        if (xml_.readNextStartElement())
            readContexts();
        EXPECT_FALSE(xml_.hasError()) << xml_.errorString().toStdString();
        return std::move(texts_);
    }

private:
    void readContexts()
    {
        while (xml_.readNextStartElement()) {
            QString context;
            while (xml_.readNextStartElement()) {
                if (xml_.name() == QLatin1String("name"))
                    context = xml_.readElementText();
                else
                    readMessage(context);
            }
        }
    }

    void readMessage(const QString& context)
    {
        QString source;
        TranslatedText text;
        text.hasPlural = xml_.attributes().value(QStringLiteral("numerus")) == QLatin1String("yes");
        while (xml_.readNextStartElement()) {
            if (xml_.name() == QLatin1String("source"))
                source.prepend(xml_.readElementText());
            else if (xml_.name() == QLatin1String("comment"))
                source += u'\n' + xml_.readElementText();
            else
                readTranslation(text);
        }
        texts_[{context, source}] = text;
    }

    void readTranslation(TranslatedText& text)
    {
        text.isFinished = !xml_.attributes().hasAttribute(QStringLiteral("type"));
        if (!text.hasPlural) {
            text.translations.append(xml_.readElementText());
            return;
        }
        while (xml_.readNextStartElement())
            text.translations.append(xml_.readElementText());
    }

    QXmlStreamReader xml_;
    TranslatedTexts texts_;
};

}  // namespace

QString sourcePath(const QString& relative)
{
    return QStringLiteral(VELK_SOURCES "/") + relative;
}

QString translationFile(const QString& language)
{
    return sourcePath(QStringLiteral("host/browser/translations/velk-browser_%1.ts").arg(language));
}

TranslatedTexts readTranslations(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return Reader(file).read();
}

}  // namespace test
