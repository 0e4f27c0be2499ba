#include "job_window.h"

#include "file_dialog_answer.h"
#include "log_check.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "ui/guarded_job.h"
#include "ui/settings.h"
#include "worker/famicom_thread.h"
#include "worker/flash_chip_probe.h"

#include <QDir>
#include <QPushButton>
#include <QtTest>

namespace
{

constexpr int kJobTimeoutMs = 60000;

} // namespace

JobWindow::JobWindow(std::unique_ptr<virtual_reader::Cartridge> cartridge)
    : m_fixture(std::move(cartridge))
{
    m_fixture.findReader();
    ReaderFixture::addShippedScripts();
    m_tab = std::make_unique<MainTab>();
    m_tab->guarded->backupFolder = m_fixture.path("backups");
    m_tab->show();
}

void JobWindow::selectGb(int mapper, int romSize, int ramSize)
{
    m_tab->settings->selectSysType(kSystemGb);
    m_tab->settings->selectItem1(mapper);
    m_tab->settings->selectItem2(romSize);
    m_tab->settings->selectItem3(ramSize);
}

void JobWindow::selectGba(int romSize, int saveType, int ramSize)
{
    m_tab->settings->selectSysType(kSystemGba);
    m_tab->settings->selectItem1(romSize);
    m_tab->settings->selectItem2(saveType);
    m_tab->settings->selectItem3(ramSize);
}

void JobWindow::tickVerify()
{
    m_tab->settings->setCheck(Qt::Checked);
}

void JobWindow::press(ActionButton button, const QString &path)
{
    FileDialogAnswer answer(path);
    QTest::mouseClick(m_tab.get()->*button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
}

void JobWindow::run(ActionButton button, const QString &path)
{
    press(button, path);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
}

QString JobWindow::judgement() const
{
    return judgementsOf(*m_tab).value(0);
}

QString JobWindow::judgements() const
{
    return judgementsOf(*m_tab).join('\n');
}

QString JobWindow::log() const
{
    return m_tab->console->toPlainText();
}

QMap<QString, QByteArray> JobWindow::backups() const
{
    QMap<QString, QByteArray> files;
    const QDir folder(m_tab->guarded->backupFolder);
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        if (!name.endsWith(".part"))
            files[folder.filePath(name)] = contentOf(folder.filePath(name));
    }
    return files;
}

QByteArray onlyBackup(const JobWindow &window)
{
    const QMap<QString, QByteArray> files = window.backups();
    return files.size() == 1 ? files.first() : QByteArray("not one file");
}

QStringList bareTraffic(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                        const CartridgeJob &job, const QString &path)
{
    ReaderFixture fixture(std::move(cartridge));
    fixture.findReader();
    ReaderFixture::addShippedScripts();
    const bool isGba = isGbaJob(job.operate);
    if (isGba)
        selectGbaMode();
    else
        selectGbMode();
    if (isFlashJob(job.operate) && !isGba)
        probeFlashChip();
    FamicomThread worker;
    worker.operate = job.operate;
    worker.script_name = job.scriptPath;
    worker.file_name = path;
    worker.rom_size = job.romSize;
    worker.ram_size = job.ramSize;
    worker.save_type = job.saveType;
    worker.flash_width = job.flashWidth;
    worker.start();
    worker.wait();
    return fixture.traffic();
}
