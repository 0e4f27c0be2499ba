#include "reader_fixture.h"

#include "device/device_link.h"

#include <QCoreApplication>
#include <QDir>
#include <QtTest>

namespace
{

QString mapperFolder()
{
    return QCoreApplication::applicationDirPath() + "/mapper";
}

} // namespace

ReaderFixture::ReaderFixture(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                             virtual_reader::VirtualReaderConfig config)
    : ReaderBench(std::move(cartridge), {std::move(config)})
{
    QDir(mapperFolder()).removeRecursively();
}

ReaderFixture::~ReaderFixture()
{
    QDir(mapperFolder()).removeRecursively();
}

void ReaderFixture::findReader()
{
    QCOMPARE(findDevice(0, nullptr), 1);
    reader().clearOperations();
}

QString ReaderFixture::scriptPath(const QString &name)
{
    return mapperFolder() + "/" + name;
}

QString ReaderFixture::addScript(const QString &name, const QByteArray &text)
{
    QDir().mkpath(mapperFolder());
    putFile(scriptPath(name), text);
    return scriptPath(name);
}

void ReaderFixture::addShippedScripts()
{
    const QDir folder(GBDRIVER_MAPPER_FOLDER);
    for (const QString &name : folder.entryList({"*.nut"}, QDir::Files))
        addScript(name, contentOf(folder.filePath(name)));
}
