// The group box in which the user states what cartridge is inserted. Its fields are what a job
// takes its parameters from.
//
// The three lower lists change their meaning with the system: mapper, ROM size and RAM size for a
// GB/GBC cartridge; ROM size, save type and save size for a GBA cartridge. Choosing a system resets
// that system's fields to its defaults; the other system's fields keep their last values.
//
// Thread: GUI thread only. Sizes are in bytes.
#pragma once

#include "cart/setting_tables.h"

#include <QGroupBox>
#include <QString>

class QCheckBox;
class QComboBox;
class QLabel;

class Settings : public QGroupBox
{
    Q_OBJECT

public:
    explicit Settings(QWidget *parent = nullptr);

    // What is chosen now. Only this class changes the fields.
    int sysType = kSystemGb;
    int mbcType = 0;
    int gbRomSize = 0;
    int gbRamSize = 0;
    int gbaRomSize = 0;
    int gbaRamType = kSaveSram;
    int gbaRamSize = 0;
    int gbaRamSizeRow = 0; // first row of kGbaSaveSizes offered for the save type
    bool verify = false;

    // Choose on behalf of the user, by value rather than by row: what a cartridge's header told.
    // selectSysType() resets that system's fields first. The others leave everything unchanged when
    // no row of their list holds `value`.
    void selectSysType(int type);
    void selectItem1(int value); // GB/GBC: mapper; GBA: ROM size
    void selectItem2(int value); // GB/GBC: ROM size; GBA: save type
    void selectItem3(int value); // save size; on GBA only the two sizes of the save type

public slots:
    // The user chose a row of a list, or changed the check box. An `index` that is no row is
    // ignored. A system other than GB/GBC and GBA empties the lists and makes the others do
    // nothing.
    void setSysType(int type);
    void setItem2(int index);
    void setItem1(int index);
    void setItem3(int index);
    void setCheck(int index); // a Qt::CheckState; only Qt::Checked asks for verification

    int getSysType();
    int getMbcType();
    // File name of the mapper script for the shown mapper. Meaningful only for GB/GBC; empty when
    // the list is empty.
    QString getMbcScript();
    int getGbRomSize();
    int getGbRamSize();
    int getGbaRamType();
    int getGbaRomSize();
    int getGbaRamSize();
    bool getCheckType();

private:
    void buildWidgets();
    void layOutWidgets();
    void connectWidgets();
    void repopulate(int type);
    void repopulateGb();
    void repopulateGba();
    void refillGbaRamSizes(int ramType);

    QLabel *m_sysLabel;
    QLabel *m_item1Label;
    QLabel *m_item2Label;
    QLabel *m_item3Label;
    QComboBox *m_sysBox;
    QComboBox *m_item1Box;
    QComboBox *m_item2Box;
    QComboBox *m_item3Box;
    QCheckBox *m_verifyBox;
};
