#include "native_bench.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/natives.h"
#include "script/script_host.h"

#include <QRegularExpression>

namespace
{

constexpr const char *kSlotNames[] = {"gbRead",  "gbRomWrite", "gbSaveWrite",
                                      "gbaRead", "saveRead",   "saveWrite"};

QString hex(std::uint32_t number)
{
    return QString::number(number, 16).toUpper();
}

} // namespace

NativeBench *NativeBench::s_current = nullptr;

NativeBench::NativeBench(int operate, int bufferSize)
    : job(CartridgeJob{}, m_recorder), m_buffer(static_cast<std::size_t>(bufferSize))
{
    drive.addDrive('E', DriveType::Removable);
    setDriveBackend(&drive);
    deviceLink.driveLetter = 'E';
    s_current = this;
    deviceOps = {transfer<0>, writePairs,  transfer<1>, transfer<2>, transfer<3>,
                 writePairs,  transfer<4>, transfer<5>, nullptr};
    job.job.operate = operate;
    job.job.romSize = movesSave(operate) ? kOtherSize : bufferSize;
    job.job.ramSize = movesSave(operate) ? bufferSize : kOtherSize;
    job.data = m_buffer.data();
    m_vm = createVm(&job);
    const NativeSet natives = nativesOf(operate);
    for (int i = 0; i < natives.count; ++i)
        registerNative(m_vm, natives.natives[i].name, natives.natives[i].function);
}

NativeBench::~NativeBench()
{
    sq_close(m_vm);
    s_current = nullptr;
    deviceOps = DeviceOps();
    setDriveBackend(nullptr);
}

bool NativeBench::run(const QByteArray &statements)
{
    m_events.clear();
    operations.clear();
    drive.forgetCalls();
    const QByteArray script = "function entry(dev) { " + statements + " }";
    if (SQ_FAILED(sq_compilebuffer(m_vm, script.constData(), script.size(), "test", SQTrue)))
        qFatal("the test's own script does not compile: %s", script.constData());
    sq_pushroottable(m_vm);
    sq_call(m_vm, 1, SQFalse, SQTrue);
    sq_pop(m_vm, 1);
    return callScriptFunction(m_vm, "entry", &job, 0) >= 0;
}

void NativeBench::setResults(const QList<std::uint32_t> &results)
{
    m_results = results;
}

QStringList NativeBench::progress() const
{
    QStringList reports = m_events.filter(QRegularExpression("^progress "));
    return reports.replaceInStrings("progress ", "");
}

QStringList NativeBench::logs() const
{
    return logTexts(m_events);
}

QStringList NativeBench::errors() const
{
    return scriptErrors(logs());
}

std::uint32_t NativeBench::nextResult(std::uint32_t usual)
{
    return m_results.isEmpty() ? usual : m_results.takeFirst();
}

template <int slot>
std::uint32_t NativeBench::transfer(std::uint32_t first, void *buffer, std::uint32_t length)
{
    const auto place = static_cast<unsigned char *>(buffer) - s_current->job.data;
    s_current->operations.append(QString("%1 %2 +%3 @%4")
                                     .arg(kSlotNames[slot], hex(first))
                                     .arg(length)
                                     .arg(static_cast<qint64>(place)));
    return s_current->nextResult(length);
}

std::uint32_t NativeBench::writePairs(const std::uint32_t *addresses, const std::uint32_t *values,
                                      std::uint32_t count)
{
    QString text = "gbWrite";
    for (std::uint32_t i = 0; i < count; ++i)
        text += " " + hex(addresses[i]) + "<-" + hex(values[i]);
    s_current->operations.append(text);
    return s_current->nextResult(count * 512);
}
