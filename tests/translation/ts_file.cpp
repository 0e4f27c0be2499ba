#include "ts_file.h"

#include <QFile>
#include <QXmlStreamReader>

namespace
{

// Control characters stand as elements: <byte value="xd"/>.
QString textOf(QXmlStreamReader &xml)
{
    QString text;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement())
            break;
        if (xml.isCharacters()) {
            text += xml.text();
        } else if (xml.isStartElement()) {
            const QString value = xml.attributes().value("value").toString();
            const bool isHex = value.startsWith('x');
            text += QChar(value.mid(isHex ? 1 : 0).toInt(nullptr, isHex ? 16 : 10));
            xml.skipCurrentElement();
        }
    }
    return text;
}

TsEntry entryOf(QXmlStreamReader &xml, const QString &context)
{
    TsEntry entry;
    entry.context = context;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source")) {
            entry.source = textOf(xml);
        } else if (xml.name() == QLatin1String("translation")) {
            entry.type = xml.attributes().value("type").toString();
            entry.translation = textOf(xml);
        } else {
            xml.skipCurrentElement();
        }
    }
    return entry;
}

void readContext(QXmlStreamReader &xml, TsFile *file)
{
    QString name;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("name"))
            name = xml.readElementText();
        else if (xml.name() == QLatin1String("message"))
            file->entries << entryOf(xml, name);
        else
            xml.skipCurrentElement();
    }
}

} // namespace

TsFile readTs(const QString &path)
{
    TsFile file;
    QFile bytes(path);
    if (!bytes.open(QIODevice::ReadOnly)) {
        file.error = path + ": " + bytes.errorString();
        return file;
    }
    QXmlStreamReader xml(&bytes);
    if (xml.readNextStartElement())
        file.language = xml.attributes().value("language").toString();
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("context"))
            readContext(xml, &file);
        else
            xml.skipCurrentElement();
    }
    if (xml.hasError())
        file.error = path + ": " + xml.errorString();
    return file;
}

QString keyOf(const TsEntry &entry)
{
    return entry.context + ": " + entry.source;
}
