// The main tab with its real worker, beside a virtual reader of this process, as a user has it:
// the shipped scripts, dialogs that are answered, a folder for backups that is the test's own.
#pragma once

#include "reader_fixture.h"

#include "ui/main_tab.h"

#include <QMap>

#include <memory>

// One of the tab's actions.
using ActionButton = QPushButton *MainTab::*;

class JobWindow
{
public:
    // `cartridge` null: an empty slot. The reader has been found, and nothing was sent since.
    explicit JobWindow(std::unique_ptr<virtual_reader::Cartridge> cartridge);

    ReaderFixture &bench() { return m_fixture; }
    MainTab &tab() { return *m_tab; }

    void selectGb(int mapper, int romSize, int ramSize);
    void selectGba(int romSize, int saveType, int ramSize);
    void tickVerify();

    // Presses an action and gives its dialog `path`; run() waits for the judgement as well.
    void press(ActionButton button, const QString &path);
    void run(ActionButton button, const QString &path);

    // See judgementsOf(). The first line, and all of them as one text.
    QString judgement() const;
    QString judgements() const;
    // The log as plain text.
    QString log() const;

    // Files of the backup folder by path; without temporary ones.
    QMap<QString, QByteArray> backups() const;

private:
    ReaderFixture m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

// What the reader is asked for by an action that has nothing standing around its worker: the bus
// mode, the probe of a flash chip, and the worker's own run of `job` with `path`. For a cartridge
// of its own; no other window may exist.
QStringList bareTraffic(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                        const CartridgeJob &job, const QString &path);

// The one file among `backups`; what is no bytes of any test if there is not one.
QByteArray onlyBackup(const JobWindow &window);
