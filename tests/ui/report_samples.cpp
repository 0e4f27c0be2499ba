#include "report_samples.h"

#include "ui/settings.h"
#include "virtual/cartridge_factory.h"
#include "virtual/gb_cartridges.h"
#include "virtual/image_generator.h"

#include <QComboBox>

using namespace virtual_reader;

namespace
{
constexpr std::uint32_t kGbTypeOffset = 0x147;
constexpr std::uint32_t kGbRomSizeOffset = 0x148;
constexpr std::uint32_t kGbRamSizeOffset = 0x149;
} // namespace

std::unique_ptr<Cartridge> makeGbHeaderCartridge(int type, int romCode, int ramCode)
{
    ByteVector image;
    std::string error;
    if (!makeGbImage({}, &image, &error))
        qFatal("%s", error.c_str());
    image[kGbTypeOffset] = static_cast<std::uint8_t>(type);
    image[kGbRomSizeOffset] = static_cast<std::uint8_t>(romCode);
    image[kGbRamSizeOffset] = static_cast<std::uint8_t>(ramCode);
    return std::make_unique<GbCartridge>(image, 0);
}

std::unique_ptr<Cartridge> makeGbaGame(const QString &code, std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.code = code.toStdString();
    spec.romSize = romSize;
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("%s", error.c_str());
    auto cartridge = makeCartridge(image, &error);
    if (!cartridge)
        qFatal("%s", error.c_str());
    return cartridge;
}

QStringList deviceLines()
{
    return {"--Device information--", "Driver label: VIRTUAL", "Device firmware: QDX_PCB02_FW303",
            "\r\n"};
}

QStringList nothingFoundLines()
{
    return {"Can not auto detect cartridge information.",
            "Maybe no insert cart or it's a black cart.",
            "Also try:",
            " 1.Turn off anti-virus software.",
            " 2.Damaged or Dirty.",
            " 3.Switch correct volte on dump board.",
            " 4.Try again.",
            "<hr><br>"};
}

QStringList gbHeaderTraffic()
{
    return {"F0/02", "02/01", "read 0+8192"};
}

QStringList gbaHeaderTraffic()
{
    return {"F0/03", "03/01", "03/06", "read 0+8192"};
}

QStringList shownSettings(const Settings &settings)
{
    QStringList texts;
    for (const QComboBox *box : settings.findChildren<QComboBox *>())
        texts << box->currentText();
    return texts;
}
