// The four actions of the main tab that work on a file of the user's: which dialog each opens and
// which job it starts.
#pragma once

#include <QString>

class QWidget;

enum class FileDialogKind { Save, Open };

// Texts have the context "MainTab" and are translated where they are used.
struct FileAction {
    FileDialogKind dialog;
    const char *caption;
    const char *gbFilter;
    const char *gbaFilter;
    int gbCode;  // operation code of the job for a GB/GBC cartridge
    int gbaCode; // and for a GBA cartridge
    const char *logText;
};

extern const FileAction kReadRomAction;
extern const FileAction kReadRamAction;
extern const FileAction kWriteFlashAction;
extern const FileAction kWriteRamAction;

// Operation code of `action` for the system `sysType`.
int jobCode(const FileAction &action, int sysType);

// Runs the action's file dialog over `parent`, beginning in the current folder.
// Returns: the chosen path; empty if the user cancelled.
// Thread:  GUI thread; the event loop runs meanwhile.
QString askForFile(QWidget *parent, const FileAction &action, int sysType);
