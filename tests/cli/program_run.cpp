#include "program_run.h"

using namespace virtual_reader;

namespace
{

constexpr std::uint8_t kMbc5RamBattery = 0x1B;

constexpr int kHeaderSumBegin = 0x134;
constexpr int kHeaderChecksum = 0x14D;
constexpr int kGlobalChecksum = 0x14E; // high byte first

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
    const ProcessRun run = runProcess(program, arguments, environmentFor(reader));
    if (run.exitCode == -1)
        qWarning("%s did not run to its end: %s", qPrintable(program), run.errors.constData());
    return {run.exitCode, printedText(run.output), printedText(run.errors)};
}

ProgramResult runProgram(const QString &program, const QString &words, const ReaderChoice &reader)
{
    const QString tidy = words.simplified();
    return runProgram(program, tidy.isEmpty() ? QStringList() : tidy.split(' '), reader);
}

QByteArray gbImage(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize)
{
    return toByteArray(gbImage(GbImageSpec{type, romSize, ramSize}));
}

QByteArray gbaImage(const QString &code, std::uint32_t romSize)
{
    return toByteArray(gbaGame(code, romSize));
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
