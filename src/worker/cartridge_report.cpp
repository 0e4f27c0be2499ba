#include "worker/cartridge_report.h"

#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "worker/job_run.h"
#include "worker/shown_text.h"

#include <QCoreApplication>

namespace
{

constexpr std::uint32_t kKibibyte = 1024;

// Text up to its first NUL, or all `capacity` bytes when there is none.
QString boundedText(const void *bytes, std::uint32_t capacity)
{
    const auto *start = static_cast<const char *>(bytes);
    return QString::fromUtf8(start, static_cast<int>(qstrnlen(start, capacity)));
}

// One report in the making.
class Reporter
{
    Q_DECLARE_TR_FUNCTIONS(MainTab)

public:
    Reporter(const ReportOutput &output, const HeaderDecoders &decoders)
        : m_output(output), m_decoders(decoders)
    {
        m_report.header.fill('\0', static_cast<int>(kReportedBytes));
    }

    CartridgeReport make()
    {
        if (findDevice(0, nullptr) == 0) {
            fail(ReportOutcome::NoReader, tr("Can not found dump device."));
            return m_report;
        }
        reportDevice();
        if (!readHeader(selectGbMode, &DeviceOps::gbRead))
            return m_report;
        if (m_decoders.gb(header(), &m_report.gb) != 0) {
            reportGb();
            return m_report;
        }
        if (readHeader(selectGbaMode, &DeviceOps::gbaRead))
            reportGba(m_decoders.gba(header(), &m_report.gba));
        return m_report;
    }

private:
    void line(const QString &message) const { m_output.line(message); }
    const std::uint8_t *header() const
    {
        return reinterpret_cast<const std::uint8_t *>(m_report.header.constData());
    }

    void reportDevice()
    {
        m_report.label = boundedText(deviceLink.driverLabel, kLabelSize);
        m_report.firmware = boundedText(deviceLink.identityBytes, kIdentitySize);
        line(tr("--Device information--"));
        line(tr("Driver label: ") + shownValue(m_report.label));
        line(tr("Device firmware: ") + shownValue(m_report.firmware));
        line(tr("\r\n"));
    }

    bool fail(ReportOutcome outcome, const QString &message)
    {
        m_report.outcome = outcome;
        m_report.error = message;
        line(message);
        return false;
    }

    static QString inKibibytes(std::int32_t bytes)
    {
        return QString::number(static_cast<std::uint32_t>(bytes) / kKibibyte) + tr("KB");
    }

    // "8KB"; "512B" up to `largestInBytes`.
    static QString saveSizeText(std::int32_t bytes, std::uint32_t largestInBytes)
    {
        const auto size = static_cast<std::uint32_t>(bytes);
        return size > largestInBytes ? inKibibytes(bytes) : QString::number(size) + tr("B");
    }

    bool readHeader(std::uint32_t (*selectMode)(), DeviceOperation DeviceOps::*read)
    {
        if (selectMode() == 0) {
            m_report.modeFault = modeFault();
            m_report.driveError = QString::fromLocal8Bit(lastDriveError().c_str());
            return fail(ReportOutcome::NoMode, tr("Initialize device error."));
        }
        if ((deviceOps.*read)(0, m_report.header.data(), kReportedBytes) != kReportedBytes)
            return fail(ReportOutcome::ShortRead, tr("Read ROM error."));
        return true;
    }

    void reportGb()
    {
        constexpr std::uint32_t kLargestInBytes = 1023;
        const GbHeaderInfo &gb = m_report.gb;
        m_report.outcome = ReportOutcome::GbCartridge;
        line(tr("--GB/GBC Cartridge information--"));
        line(tr("Title: ") + shownValue(gb.title));
        line(tr("Cart type: ") + gb.typeName);
        line(tr("ROM Size: ") + inKibibytes(gb.romSize));
        line(tr("RAM Size: ") + saveSizeText(gb.ramSize, kLargestInBytes));
        m_output.rule();
        DetectedSettings detected{kSystemGb, gb.mbcType, gb.romSize, {}};
        if (gb.ramSize != 0)
            detected.item3 = gb.ramSize;
        m_output.settings(detected);
    }

    void reportGba(int found)
    {
        if (found == 0)
            reportUnknown();
        else if (m_report.gba.romSize == 0)
            reportGbaWithoutDetail();
        else
            reportGbaGame();
    }

    void reportUnknown()
    {
        const QString error = tr("Can not auto detect cartridge information.");
        if (!m_output.hasAdviceForUnknownGames && gbaLogoMatches(header())) {
            m_report.outcome = ReportOutcome::Unknown;
            m_report.error = error;
            return;
        }
        fail(ReportOutcome::Unknown, error);
        for (const QString &message :
             {tr("Maybe no insert cart or it's a black cart."), tr("Also try:"),
              tr(" 1.Turn off anti-virus software."), tr(" 2.Damaged or Dirty."),
              tr(" 3.Switch correct volte on dump board."), tr(" 4.Try again.")})
            line(message);
        m_output.rule();
    }

    // For a decoder that reports a GBA logo and an unknown game apart from no cartridge. The
    // present one returns the ROM size for both and never leads here.
    void reportGbaWithoutDetail()
    {
        fail(ReportOutcome::Unknown, tr("Detect GBA cartridge, but can not detect detail."));
        m_output.settings({kSystemGba, {}, {}, {}});
        m_output.rule();
    }

    void reportGbaGame()
    {
        constexpr std::uint32_t kLargestInBytes = 1024;
        const GbaHeaderInfo &gba = m_report.gba;
        m_report.outcome = ReportOutcome::GbaCartridge;
        line(tr("--GBA Cartridge information--"));
        line(tr("Title: ") + gba.title);
        line(tr("Year: ") + gba.year);
        line(tr("Publisher: ") + gba.publisher);
        line(tr("ROM Size: ") + inKibibytes(gba.romSize));
        line(tr("RAM Size: ") + saveSizeText(gba.saveSize, kLargestInBytes));
        m_output.settings({kSystemGba, gba.romSize, gba.saveType, gba.saveSize});
        m_output.rule();
    }

    const ReportOutput &m_output;
    const HeaderDecoders m_decoders;
    CartridgeReport m_report;
};

} // namespace

CartridgeReport makeCartridgeReport(const ReportOutput &output, const HeaderDecoders &decoders)
{
    return Reporter(output, decoders).make();
}

bool isUnknownGbaGame(const CartridgeReport &report)
{
    return report.outcome == ReportOutcome::Unknown &&
           gbaLogoMatches(reinterpret_cast<const std::uint8_t *>(report.header.constData()));
}
