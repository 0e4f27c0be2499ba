// Writes what fuzzing of the header decoders starts from: headers of generated cartridges.
//
// usage: make_header_corpus FOLDER
//
// Puts one file for each header into FOLDER, and a list of them.
#include "corpus_folder.h"
#include "header_bytes.h"
#include "virtual/image_generator.h"

#include <QFile>

#include <cstdio>

using namespace virtual_reader;

namespace
{

constexpr int kGbHeaderLength = 0x150;

const GbImageSpec kGbImages[] = {
    {0x00, 0x8000, 0, "ROM ONLY", 1},
    {0x03, 0x80000, 0x8000, "MBC1", 2},
    {0x06, 0x40000, 0, "MBC2", 3},
    {0x10, 0x200000, 0x8000, "MBC3 WITH CLOCK", 4},
    {0x1B, 0x800000, 0x20000, "MBC5", 5},
    {0x22, 0x100000, 0, "MBC7", 6},
    {0xFC, 0x100000, 0x20000, "CAMERA", 7},
    {0xFF, 0x40000, 0x8000, "HUC1", 8},
    {0x20, 0x8000, 0x2000, "UNKNOWN TYPE", 9},
    {0x01, 0x10000, 0x800, "", 10},
};

// One for each kind of save memory, one in several rows, odd ones.
const QByteArray kGameCodes[] = {"AC9E",
                                 "BVDJ",
                                 "ALXP",
                                 "AC4J",
                                 "ACZP",
                                 "A3UJ",
                                 "BIXJ",
                                 "AWRP",
                                 "AXVE",
                                 "ZMAJ",
                                 "-006",
                                 "ZZZZ",
                                 QByteArray("AW\0P", 4),
                                 QByteArray(4, '\0')};

bool addGbHeaders(QVector<CorpusSample> *samples)
{
    for (const GbImageSpec &spec : kGbImages) {
        ByteVector image;
        std::string error;
        if (!makeGbImage(spec, &image, &error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return false;
        }
        samples->append({QString("gb_%1").arg(spec.type, 2, 16, QChar('0')),
                         {reinterpret_cast<const char *>(image.data()), kGbHeaderLength}});
    }
    return true;
}

void addGbaHeaders(QVector<CorpusSample> *samples)
{
    for (const QByteArray &code : kGameCodes)
        samples->append({"gba_" + QString::fromLatin1(code.toHex()), makeGbaHeader(code)});
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_header_corpus FOLDER\n");
        return 2;
    }
    QVector<CorpusSample> samples = {{"empty_slot", QByteArray(kGbHeaderLength, '\xFF')}};
    if (!addGbHeaders(&samples))
        return 1;
    addGbaHeaders(&samples);
    return writeCorpus(QFile::decodeName(argv[1]), samples) ? 0 : 1;
}
