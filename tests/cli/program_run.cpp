#include "program_run.h"

#include "virtual/image_generator.h"

#include <QFile>
#include <QOperatingSystemVersion>
#include <QProcess>
#include <QProcessEnvironment>

using namespace virtual_reader;

namespace
{

constexpr int kDeadlineMs = 120 * 1000;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;

constexpr int kHeaderSumBegin = 0x134;
constexpr int kHeaderChecksum = 0x14D;
constexpr int kGlobalChecksum = 0x14E; // high byte first

QByteArray toByteArray(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

QProcessEnvironment environmentFor(const ReaderChoice &reader)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("GBDRIVER_VIRTUAL_READER");
    environment.remove("GBDRIVER_DRIVES");
    if (!reader.virtualReader.isEmpty())
        environment.insert("GBDRIVER_VIRTUAL_READER", reader.virtualReader);
    if (!reader.drives.isEmpty())
        environment.insert("GBDRIVER_DRIVES", reader.drives);
    return environment;
}

} // namespace

ProgramResult runProgram(const QString &program, const QStringList &arguments,
                         const ReaderChoice &reader)
{
    QProcess process;
    process.setProcessEnvironment(environmentFor(reader));
    process.start(program, arguments);
    if (!process.waitForFinished(kDeadlineMs)) {
        const QString reason = program + ": " + process.errorString();
        process.kill();
        process.waitForFinished();
        qWarning("%s", qPrintable(reason));
        return {-1, {}, reason};
    }
    const bool crashed = process.exitStatus() != QProcess::NormalExit;
    if (crashed)
        qWarning("%s crashed with exit code %#x", qPrintable(program),
                 static_cast<unsigned>(process.exitCode()));
    return {crashed ? -1 : process.exitCode(), printedText(process.readAllStandardOutput()),
            printedText(process.readAllStandardError())};
}

ProgramResult runProgram(const QString &program, const QString &words, const ReaderChoice &reader)
{
    const QString tidy = words.simplified();
    return runProgram(program, tidy.isEmpty() ? QStringList() : tidy.split(' '), reader);
}

QByteArray gbImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize)
{
    GbImageSpec spec;
    spec.type = type;
    spec.romSize = romSize;
    spec.ramSize = ramSize;
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return toByteArray(image);
}

QByteArray gbaImage(const QString &code, std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.code = code.toStdString();
    spec.romSize = romSize;
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return toByteArray(image);
}

QByteArray mbc5Image(std::uint32_t romSize, std::uint32_t ramSize)
{
    return gbImage(kMbc5RamBattery, romSize, ramSize);
}

QByteArray withGlobalChecksum(QByteArray image)
{
    image[kGlobalChecksum] = '\0';
    image[kGlobalChecksum + 1] = '\0';
    unsigned sum = 0;
    for (const char byte : image)
        sum += static_cast<unsigned char>(byte);
    image[kGlobalChecksum] = static_cast<char>(sum >> 8);
    image[kGlobalChecksum + 1] = static_cast<char>(sum);
    return image;
}

QByteArray withHeaderByte(QByteArray image, int offset, char value)
{
    image[offset] = value;
    int sum = 0;
    for (int at = kHeaderSumBegin; at < kHeaderChecksum; ++at)
        sum -= static_cast<unsigned char>(image[at]) + 1;
    image[kHeaderChecksum] = static_cast<char>(sum);
    return withGlobalChecksum(image);
}

QByteArray noise(std::uint32_t size, unsigned seed)
{
    return toByteArray(makeNoise(size, seed));
}

QString printedText(const QByteArray &bytes)
{
    QString text = QString::fromLocal8Bit(bytes);
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        text.replace("\r\n", "\n");
    return text;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
