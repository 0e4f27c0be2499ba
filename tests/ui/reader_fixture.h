// What a test of the window needs around it: a reader bench, and mapper scripts beside the test
// program. Every fixture starts from an empty mapper folder.
#pragma once

#include "reader_bench.h"

class ReaderFixture : public ReaderBench
{
public:
    // `cartridge` null: an empty slot.
    explicit ReaderFixture(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                           virtual_reader::VirtualReaderConfig config = {});
    ~ReaderFixture();

    // Makes the device link find the reader, as the Info action does, and forgets what that sent.
    void findReader();

    // How often the program gave the drive up.
    int releases() const { return events.count("release"); }

    // Writes a mapper script beside the program. Returns: its full path.
    static QString addScript(const QString &name, const QByteArray &text);
    static QString scriptPath(const QString &name);
    // The mapper scripts that the program ships; they load each other, so all of them.
    static void addShippedScripts();
};
