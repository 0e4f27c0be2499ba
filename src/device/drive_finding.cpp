#include "device/drive_finding.h"

#include "device/device_link.h"

#include <QCoreApplication>
#include <QStringList>

namespace
{

struct DriveFindings {
    Q_DECLARE_TR_FUNCTIONS(DriveFindings)
};

constexpr char kIdentityFile[] = "K-DRIVER.DMP";

FileFinding fileFinding(const DriveStatus &status)
{
    return {status.code, QString::fromLocal8Bit(status.message.c_str())};
}

FileFinding openFile(char letter, const char *name, Buffering buffering)
{
    std::unique_ptr<DriveFile> file;
    const std::string path = std::string(1, letter) + ":\\" + name;
    return fileFinding(driveBackend().openForRead(path.c_str(), buffering, &file));
}

void readLabel(const char *root, DriveFinding *finding)
{
    char label[kLabelSize] = {};
    const DriveStatus status = driveBackend().volumeLabel(root, label, kLabelSize);
    finding->label = QString::fromLocal8Bit(label);
    finding->labelError = QString::fromLocal8Bit(status.message.c_str());
}

// The device link tells that a read failed, but not which way.
FileFinding failedIdentity(char letter)
{
    const QString error = QString::fromLocal8Bit(lastDriveError().c_str());
    const FileFinding opened = openFile(letter, kIdentityFile, Buffering::Unbuffered);
    return {opened.ok() ? DriveErrorCode::InputOutput : opened.code, error};
}

QString identityText()
{
    const auto *bytes = reinterpret_cast<const char *>(deviceLink.identityBytes);
    QString text = QString::fromLatin1(bytes, static_cast<int>(qstrnlen(bytes, kIdentitySize)));
    for (QChar &character : text) {
        if (!character.isPrint())
            character = QLatin1Char('?');
    }
    return text;
}

void probe(char takenLetter, DriveFinding *finding)
{
    clearLastDriveError();
    const bool passes = probeDrive(finding->letter, nullptr) == 1;
    if (!lastDriveError().empty())
        finding->identityFile = failedIdentity(finding->letter);
    else if (passes)
        finding->identity = identityText();
    finding->takenLetter = takenLetter;
    if (!passes)
        finding->verdict = DriveVerdict::NoIdentity;
    else
        finding->verdict = takenLetter == 0 ? DriveVerdict::Taken : DriveVerdict::AlsoPasses;
}

// `takenLetter`: of the drive that passed before; 0 if none did.
DriveFinding examineDrive(char letter, char takenLetter)
{
    const char root[] = {letter, ':', '\0'};
    DriveFinding finding;
    finding.letter = letter;
    finding.type = driveBackend().driveType(root);
    finding.place = QString::fromLocal8Bit(driveBackend().drivePlace(root).c_str());
    if (finding.type != DriveType::Removable)
        return finding;
    readLabel(root, &finding);
    probe(takenLetter, &finding);
    finding.command =
        fileFinding(driveBackend().mayWrite((std::string(1, letter) + ":\\CMD.CMD").c_str()));
    finding.dump = openFile(letter, "DUMP.ROM", Buffering::Unbuffered);
    return finding;
}

QString identityNote(const DriveFinding &finding)
{
    if (finding.identityFile.isMissing())
        return DriveFindings::tr("it has no identity file");
    return DriveFindings::tr("its identity could not be read: %1").arg(finding.identityFile.error);
}

QString takenText(const DriveFinding &finding)
{
    if (finding.identityFile.ok())
        return DriveFindings::tr("taken as the reader");
    return DriveFindings::tr("taken, though %1: is it a reader?").arg(identityNote(finding));
}

QString alsoText(const DriveFinding &finding)
{
    const QString first(QLatin1Char(finding.takenLetter));
    if (finding.identityFile.ok())
        return DriveFindings::tr("also a reader, but %1: comes first").arg(first);
    return DriveFindings::tr("would pass as a reader, though %1, but %2: comes first")
        .arg(identityNote(finding), first);
}

// "E: removable drive, label "READER", /media/reader (/dev/sdb1)"
QString headline(const DriveFinding &finding)
{
    QString line = QLatin1Char(finding.letter) + QStringLiteral(": ") + driveTypeText(finding.type);
    if (!finding.label.isEmpty())
        line = DriveFindings::tr("%1, label \"%2\"").arg(line, finding.label);
    if (!finding.place.isEmpty())
        line = DriveFindings::tr("%1, %2").arg(line, finding.place);
    return line;
}

QStringList removableLines(const DriveFinding &finding)
{
    QStringList lines;
    if (!finding.labelError.isEmpty())
        lines << DriveFindings::tr("no label can be read: %1").arg(finding.labelError);
    if (finding.hasIdentity())
        lines << DriveFindings::tr("identity: \"%1\"").arg(finding.identity);
    const QString command = finding.command.isMissing()
                                ? DriveFindings::tr("missing (the first command makes it)")
                                : fileText(finding.command);
    lines << QStringLiteral("CMD.CMD: ") + command;
    lines << QStringLiteral("DUMP.ROM: ") + fileText(finding.dump);
    return lines;
}

} // namespace

QVector<DriveFinding> examineDrives()
{
    const ReaderCall call;
    QVector<DriveFinding> findings;
    char takenLetter = 0;
    const std::uint32_t drives = driveBackend().logicalDrives();
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((drives >> (letter - 'A') & 1U) == 0)
            continue;
        findings << examineDrive(letter, takenLetter);
        if (findings.last().verdict == DriveVerdict::Taken)
            takenLetter = letter;
    }
    return findings;
}

NamedReader findNamedReader()
{
    const ReaderSession session;
    const ReaderCall call;
    const signed char before = deviceLink.driveLetter;
    const std::uint32_t drives = driveBackend().logicalDrives();
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((drives >> (letter - 'A') & 1U) == 0)
            continue;
        clearLastDriveError();
        if (probeDrive(letter, nullptr) == 0)
            continue;
        if (lastDriveError().empty())
            return {letter, identityText()};
        break; // jobs would take this one
    }
    deviceLink.driveLetter = before;
    return {};
}

QString driveTypeText(DriveType type)
{
    switch (type) {
    case DriveType::Unknown:
        return DriveFindings::tr("drive of unknown type");
    case DriveType::NoRoot:
        return DriveFindings::tr("no drive any more");
    case DriveType::Removable:
        return DriveFindings::tr("removable drive");
    case DriveType::Fixed:
        return DriveFindings::tr("fixed disk");
    case DriveType::Remote:
        return DriveFindings::tr("network drive");
    case DriveType::CdRom:
        return DriveFindings::tr("CD or DVD drive");
    case DriveType::RamDisk:
        return DriveFindings::tr("RAM disk");
    }
    return DriveFindings::tr("type %1").arg(static_cast<std::uint32_t>(type));
}

QString verdictText(const DriveFinding &finding)
{
    switch (finding.verdict) {
    case DriveVerdict::NotRemovable:
        return DriveFindings::tr("not taken: a reader is a removable drive, this is not");
    case DriveVerdict::NoIdentity:
        return DriveFindings::tr("not taken: its K-DRIVER.DMP ends before the identity");
    case DriveVerdict::Taken:
        return takenText(finding);
    case DriveVerdict::AlsoPasses:
        return alsoText(finding);
    }
    return QString();
}

QString fileText(const FileFinding &file)
{
    if (file.ok())
        return DriveFindings::tr("opens");
    return file.isMissing() ? DriveFindings::tr("missing")
                            : DriveFindings::tr("fails: %1").arg(file.error);
}

QStringList driveLines(const DriveFinding &finding)
{
    QStringList lines{headline(finding)};
    QStringList details{verdictText(finding)};
    if (finding.type == DriveType::Removable)
        details += removableLines(finding);
    for (const QString &detail : details)
        lines << QStringLiteral("   ") + detail;
    return lines;
}
