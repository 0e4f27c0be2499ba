// One cartridge into a folder: its ROM, its save, and a report beside them.
//
// A first read that could not be repeated is kept with the mark ".unverified".
// Files that are there already are never replaced: a ROM with the same bytes is left alone, a save
// with the same bytes too; anything else gets a name of its own.
// Thread: as worker/job_run.h.
#pragma once

#include "trust/backup_report.h"
#include "trust/cartridge_values.h"
#include "trust/checked_read.h"
#include "trust/known_titles.h"

#include <QElapsedTimer>

struct CartridgeBackupPlan {
    QString folder;          // exists
    int reads = 0;           // how often to read, from 1; 0: as often as each memory needs
    QVector<DatFile> tables; // of known dumps, beside the built-in one
    QString program;         // name and version of the program, for the report
};

class CartridgeBackup
{
public:
    // `report`: of the cartridge in the slot, which was recognised. All must outlive this object.
    CartridgeBackup(const CartridgeReport &report, const CartridgeBackupPlan &plan,
                    TrustListener &listener);

    // The steps, in this order; a step is left out after one that ended as Stopped. What comes back
    // belongs to this object.
    const BackedUpMemory &backUpRom();
    const BackedUpMemory &backUpSave();
    // Writes the report, unless every byte was in the folder already. An advice stands behind the
    // line of its memory.
    // Returns: Done or NoFile.
    Outcome writeReport(const QString &romAdvice = {}, const QString &saveAdvice = {});

    // What is known of the cartridge, from its header or the game table.
    const CartridgeValues &values() const { return m_record.values; }
    // Its title; after a verified ROM that of the known dump.
    const QString &title() const { return m_record.title; }
    // False if every byte was in the folder already.
    bool isNew() const { return !(m_record.rom.isThere && isNothingNew(m_record.save)); }

private:
    static bool isNothingNew(const BackedUpMemory &save);
    bool makeJob(CartridgeTask task, CartridgeJob *job, BackedUpMemory *memory);
    bool hasRoom(const CartridgeJob &job, BackedUpMemory *memory) const;
    QString pathFor(bool isDated, const QString &suffix) const;
    bool readFirst(const CartridgeJob &job, CheckedRead *made, BackedUpMemory *memory);
    bool readMore(const CartridgeJob &job, int times, CheckedRead *made, BackedUpMemory *memory);
    void readRom(const CartridgeJob &job);
    void readSave(const CartridgeJob &job);
    bool hasReadableSave();
    bool isLockedByRomJob() const;
    bool isSameCartridge() const;
    QString romSuffix() const;
    int moreReads(bool isKnown) const;
    void cutToContent(RomEvidence *evidence, BackedUpMemory *rom) const;
    QString sameFile(const BackedUpMemory &memory, const QString &suffix) const;
    void keep(const Verdict &verdict, const QString &suffix, bool isDated, BackedUpMemory *memory);
    Outcome writeNew(bool isDated, const QString &suffix, const QByteArray &bytes, QString *path);

    const CartridgeReport &m_report;
    const CartridgeBackupPlan &m_plan;
    TrustListener &m_listener;
    BackupRecord m_record;
    QElapsedTimer m_sinceBegin;
};
