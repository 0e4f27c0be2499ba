#include "ui/file_action.h"

#include "cart/setting_tables.h"
#include "worker/famicom_thread.h"

#include <QCoreApplication>
#include <QFileDialog>

const FileAction kReadRomAction = {
    FileDialogKind::Save,
    QT_TRANSLATE_NOOP("MainTab", "Read ROM to..."),
    QT_TRANSLATE_NOOP("MainTab", "GB/GBC Rom (*.gb *.gbc)"),
    QT_TRANSLATE_NOOP("MainTab", "GBA Rom (*.gba)"),
    GB_READ_ROM,
    GBA_READ_ROM,
    QT_TRANSLATE_NOOP("MainTab", "Reading data from ROM to file:"),
};

const FileAction kReadRamAction = {
    FileDialogKind::Save,
    QT_TRANSLATE_NOOP("MainTab", "Read save to..."),
    QT_TRANSLATE_NOOP("MainTab", "GB/GBC save (*.sav)"),
    QT_TRANSLATE_NOOP("MainTab", "GBA save (*.sav)"),
    GB_READ_RAM,
    GBA_READ_RAM,
    QT_TRANSLATE_NOOP("MainTab", "Reading data from save to file:"),
};

const FileAction kWriteFlashAction = {
    FileDialogKind::Open,
    QT_TRANSLATE_NOOP("MainTab", "Get ROM File."),
    QT_TRANSLATE_NOOP("MainTab", "GB/GBC ROM (*.gb *.gbc)"),
    QT_TRANSLATE_NOOP("MainTab", "GBA ROM (*.gba)"),
    GB_WRITE_FLASH,
    GBA_WRITE_FLASH,
    QT_TRANSLATE_NOOP("MainTab", "Writing rom to cartridge from file:"),
};

const FileAction kWriteRamAction = {
    FileDialogKind::Open,
    QT_TRANSLATE_NOOP("MainTab", "Get Save File."),
    QT_TRANSLATE_NOOP("MainTab", "GB/GBC save (*.sav)"),
    QT_TRANSLATE_NOOP("MainTab", "GBA save (*.sav)"),
    GB_WRITE_RAM,
    GBA_WRITE_RAM,
    QT_TRANSLATE_NOOP("MainTab", "Writing save to cartridge from file:"),
};

int jobCode(const FileAction &action, int sysType)
{
    return sysType == kSystemGba ? action.gbaCode : action.gbCode;
}

QString askForFile(QWidget *parent, const FileAction &action, int sysType)
{
    const auto tr = [](const char *text) { return QCoreApplication::translate("MainTab", text); };
    const QString caption = tr(action.caption);
    const QString filter = tr(sysType == kSystemGba ? action.gbaFilter : action.gbFilter);
    const QString folder = QStringLiteral(".");
    if (action.dialog == FileDialogKind::Save)
        return QFileDialog::getSaveFileName(parent, caption, folder, filter);
    return QFileDialog::getOpenFileName(parent, caption, folder, filter);
}
