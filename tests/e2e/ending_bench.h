// One job that a signal meets at an exact moment: what the job works on, and what must hold behind
// it. No half file stands under a good name, no save and no ROM is lost, the drive is free. The
// caller runs the program.
#pragma once

#include "mounted_reader.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <csignal>

struct EndedJob {
    QString target; // that it makes, below the folder of the bench; empty: it writes to a cartridge
    bool movesSave = false;
    bool isFlash = false;
};

struct Ending {
    int moment = 0; // operation of the reader behind which the signal comes; 0: none comes
    int signal = 0;
    bool isReaders = false; // the reader gets it, not the program
    bool isCounted = false; // from aim() on, not from the first operation
};

// What the caller has seen of the program.
struct EndedProgram {
    bool claimsToHaveWritten = false;
    QString backupFolder;
};

class EndingBench
{
public:
    EndingBench(const EndedJob &job, const Ending &ending);

    // Lays out the files "new.sav" and "new.gb", the old file that the job replaces, and mounts the
    // reader. Returns: why it cannot; empty on success.
    QString prepare();

    QString path(const QString &name = {}) const { return m_folder.filePath(name); }
    MountedReader &reader() { return m_reader; }
    const Ending &ending() const { return m_ending; }
    bool isKilled() const { return m_ending.signal == SIGKILL; }

    // This is the process that gets the signal; the reader waits for its number.
    void aim(qint64 process);
    // How many of the reader's operations count, see Ending.
    int operations() const { return m_reader.operations().size() - m_before; }

    // To be asked once the program has ended: unmounts the drive, and looks at all files.
    // Returns: what is not as it should be.
    QStringList problemsBehind(const EndedProgram &program);

private:
    QString target() const { return path(m_job.target); }
    QStringList readerProblems();
    QStringList fileProblems() const;
    QStringList cartridgeProblems(const EndedProgram &program) const;
    bool hasBackup(const QString &folder) const;
    bool isFlashTouched() const;

    EndedJob m_job;
    Ending m_ending;
    QTemporaryDir m_folder;
    QByteArray m_rom;
    QByteArray m_save;
    QByteArray m_newSave;
    MountedReader m_reader;
    int m_before = 0;
};

// The moments of a job with so many operations: fifteen, the first and the last among them; all
// operations of a job that has fewer.
QVector<int> momentsOf(int operations);

// In turn, but all of them if the environment has GBDRIVER_ALL_FAULTS. `moment` counts from 0.
QVector<int> signalsAt(int moment, const QVector<int> &signalNumbers);
