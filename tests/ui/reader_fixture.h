// What a test of the window needs around it: a virtual reader as this process's drive, mapper
// scripts beside the test program, and a folder for the user's files.
//
// Every fixture starts from a device link that has not looked for a reader yet and from an empty
// mapper folder. One fixture at a time.
#pragma once

#include "virtual/faulty_drive.h"
#include "virtual/gb_cartridges.h"
#include "virtual/in_process_drive.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

// The drive between the program and the reader: can be pulled out, and counts how often the program
// gave it up.
class CountingDrive : public virtual_reader::FaultyDrive
{
public:
    using virtual_reader::FaultyDrive::FaultyDrive;
    void releaseDrive() override;

    int releases = 0;
};

class ReaderFixture
{
public:
    // `cartridge` null: an empty slot.
    explicit ReaderFixture(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                           virtual_reader::VirtualReaderConfig config = {});
    ~ReaderFixture();

    virtual_reader::VirtualReader &reader() { return m_inProcess->reader(); }
    CountingDrive &drive() { return *m_drive; }

    // Makes the device link find the reader, as the Info action does, and forgets what that sent.
    void findReader();

    // Bus writes and mode commands that the reader executed so far, one text each: "F0/02" for a
    // command, "AA<-98" for a GB bus write, "read 0+128" for a read of cartridge data.
    QStringList traffic();

    // Writes a mapper script beside the program. Returns: its full path.
    static QString addScript(const QString &name, const QByteArray &text);
    static QString scriptPath(const QString &name);
    // The mapper scripts that the program ships; they load each other, so all of them.
    static void addShippedScripts();

    // A file in the user's folder: its path, its contents.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString addFile(const QString &name, const QByteArray &bytes) const;
    QByteArray fileBytes(const QString &name) const;

private:
    std::unique_ptr<DriveBackend> m_platform;
    std::unique_ptr<virtual_reader::InProcessDrive> m_inProcess;
    std::unique_ptr<CountingDrive> m_drive;
    QTemporaryDir m_folder;
};

// A cartridge with a generated ROM for header type `type`; its save memory is filled with noise.
std::unique_ptr<virtual_reader::Cartridge> makeGbCartridge(std::uint8_t type, std::uint32_t romSize,
                                                           std::uint32_t ramSize);
// An MBC5 cartridge with 32 KiB of save memory that is filled with noise.
std::unique_ptr<virtual_reader::Cartridge> makeMbc5Cartridge(std::uint32_t romSize);

QByteArray toByteArray(const virtual_reader::ByteVector &bytes);
