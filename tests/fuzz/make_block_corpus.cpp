// Writes what fuzzing of the virtual reader starts from: what a program sends in an ordinary job on
// each cartridge. The form: block_steps.h.
//
// usage: make_block_corpus FOLDER
#include "block_steps.h"
#include "corpus_folder.h"

#include <QFile>

#include <cstdio>
#include <initializer_list>

namespace
{

QByteArray bytesOf(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes.append(static_cast<char>(value));
    return bytes;
}

// A block from its class on.
QByteArray block(std::initializer_list<int> body)
{
    return bytesOf({static_cast<int>(body.size())}) + bytesOf(body);
}

QByteArray gbWrite(int address, int value)
{
    return block({2, 13, address & 0xFF, address >> 8, value});
}

QByteArray gbSaveWrite(int address, int length, int value)
{
    return block({2, 12, address & 0xFF, address >> 8, length & 0xFF, length >> 8, value});
}

QByteArray readDump(int offset, int length)
{
    return bytesOf(
        {kRead, 2, offset & 0xFF, offset >> 8 & 0xFF, offset >> 16, length & 0xFF, length >> 8});
}

const QByteArray kStartGb = block({0xF0, 2, 0}) + block({2, 1, 0}) + bytesOf({kEndFile});
const QByteArray kStartGba = block({0xF0, 3, 0}) + block({3, 1, 0}) + bytesOf({kEndFile});

// Opens the gate, switches banks, writes and reads the save.
QByteArray gbSteps()
{
    return kStartGb + readDump(0x100, 0x50) + gbWrite(0x0000, 0x0A) + gbWrite(0x2000, 2) +
           gbWrite(0x4000, 1) + gbWrite(0x6000, 1) + bytesOf({kEndFile}) + readDump(0x4000, 0x200) +
           gbSaveWrite(0xA000, 480, 0x5A) + gbWrite(0xA001, 0x11) + bytesOf({kEndFile}) +
           readDump(0xA000, 0x200) + gbWrite(0x0000, 0) + bytesOf({kPower}) +
           readDump(0xA000, 0x10);
}

QByteArray unlock(int first, int second, int command)
{
    return gbWrite(first, 0xAA) + gbWrite(second, 0x55) + gbWrite(first, command);
}

// Ids, query table, erase of a sector and of the chip, programming.
QByteArray flashSteps(int first, int second, int programOpcode)
{
    return kStartGb + unlock(first, second, 0x90) + bytesOf({kEndFile}) + readDump(0, 4) +
           gbWrite(0, 0xF0) + gbWrite(first / 2 * 2 / 16, 0x98) + bytesOf({kEndFile}) +
           readDump(0x20, 0x60) + gbWrite(0, 0xF0) + unlock(first, second, 0x80) +
           gbWrite(first, 0xAA) + gbWrite(second, 0x55) + gbWrite(0x4000, 0x30) +
           bytesOf({kEndFile}) + readDump(0x4000, 1) + readDump(0x4000, 1) + readDump(0x4000, 1) +
           block({2, programOpcode, 0, 0x40, 16, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}) +
           bytesOf({kEndFile}) + readDump(0x4000, 0x20) + unlock(first, second, 0x80) +
           unlock(first, second, 0x10) + bytesOf({kEndFile}) + readDump(0, 1) + bytesOf({kPower});
}

// One sector is named as often as the blocks have room.
QByteArray longEraseSteps()
{
    QByteArray steps =
        kStartGb + unlock(0x555, 0x2AA, 0x80) + gbWrite(0x555, 0xAA) + gbWrite(0x2AA, 0x55);
    for (int block = 0; block < 40; ++block)
        steps += gbSaveWrite(0x4000, 480, 0x30);
    return steps + bytesOf({kEndFile}) + readDump(0x4000, 1) + readDump(0x4000, 1) +
           readDump(0x4000, 1) + bytesOf({kPower});
}

// Writes, erases and reads the save with the commands of one kind of chip.
QByteArray gbaSteps(int writeOpcode, int readOpcode)
{
    return kStartGba + block({3, 6, 0, 0x10, 0, 0, 0}) + bytesOf({kEndFile}) + readDump(0, 0x200) +
           block({3, 7, 0}) + block({3, writeOpcode, 0, 0x08, 0, 0, 0, 0x40, 0, 0, 0, 0x77}) +
           bytesOf({kEndFile}) + block({3, readOpcode, 0, 0, 0, 1, 0, 0x80, 0, 0}) +
           block({3, 19, 0, 0, 0, 0, 0, 0x34, 0x12}) + bytesOf({kEndFile}) + readDump(0x3F0, 0x40);
}

// Wrong blocks between right ones.
QByteArray wrongSteps()
{
    return block({0xF0, 2, 0}) + bytesOf({kSpoil, 1}) + block({2, 1, 0}) + block({9, 9, 9}) +
           block({0xF0, 4, 0}) + bytesOf({kRaw, 3, 0x5A, 2, 1, kEndFile, kEndFile}) +
           bytesOf({kRead, 1, 0, 0x80, 0, 0xFF, 0xFF}) + readDump(0xFFFF0, 0xFF);
}

QVector<CorpusSample> samples()
{
    QVector<CorpusSample> all;
    const auto add = [&all](int cartridge, const QByteArray &steps) {
        all.append({QStringLiteral("steps_%1").arg(all.size()), bytesOf({cartridge}) + steps});
    };
    add(kNoCartridge, wrongSteps());
    for (int cartridge = kRomOnly; cartridge <= kHuc1; ++cartridge)
        add(cartridge, gbSteps());
    add(kFlash8, flashSteps(0x555, 0x2AA, 14));
    add(kFlash8, longEraseSteps());
    add(kFlash16, flashSteps(0xAAA, 0x555, 15));
    add(kFlashProtected, flashSteps(0x555, 0x2AA, 14));
    add(kFlashEndless, flashSteps(0xAAA, 0x555, 15));
    add(kGbaRom, gbaSteps(16, 17));
    add(kGbaSram, gbaSteps(16, 17));
    add(kGbaFlash64k, gbaSteps(10, 8));
    add(kGbaFlash128k, gbaSteps(11, 9));
    add(kGbaFlashProtected, gbaSteps(10, 17));
    add(kGbaEeprom512, gbaSteps(14, 12));
    add(kGbaEeprom8k, gbaSteps(15, 13));
    return all;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_block_corpus FOLDER\n");
        return 2;
    }
    return writeCorpus(QFile::decodeName(argv[1]), samples()) ? 0 : 1;
}
