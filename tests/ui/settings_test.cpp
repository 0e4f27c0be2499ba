// The settings box: every choice by the user and every choice by value.
#include "ui/settings.h"

#include "settings_lists.h"
#include "test_class.h"

#include <QLabel>
#include <QMetaMethod>
#include <QtTest>

#include <memory>

namespace
{
QStringList rowsOf(const QComboBox *box)
{
    QStringList rows;
    for (int i = 0; i < box->count(); ++i)
        rows << box->itemText(i);
    return rows;
}

const QStringList kMapperLabels = {"NONE", "MBC1", "MBC2", "MBC3", "MBC5", "MBC7", "TAMA5"};
const QStringList kScripts = {"gb_mbc0.nut", "gb_mbc1.nut", "gb_mbc2.nut", "gb_mbc3.nut",
                              "gb_mbc5.nut", "gb_mbc7.nut", "gb_tama5.nut"};
const QStringList kGbRomLabels = {"256 Kbit", "512 Kbit", "1 Mbit",  "2 Mbit", "4 Mbit",
                                  "8 Mbit",   "16 Mbit",  "32 Mbit", "64 Mbit"};
const QStringList kGbRamLabels = {"512 B", "8 K", "32 K", "64 K", "128 K"};
const QStringList kGbaRomLabels = {"8 Mb", "16 Mb", "32 Mb", "64 Mb", "128 Mb", "256 Mb", "512 Mb"};
const QStringList kSaveTypeLabels = {"SRAM", "FLASH", "EEP"};
} // namespace

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsAreDeclaredInOrder();
    void freshBoxHoldsTheGbDefaults();
    void widgetsStandInTwoColumns();

    void userChoosesGba();
    void userChoosesAMapper_data();
    void userChoosesAMapper();
    void userChoosesAGbRomSize_data();
    void userChoosesAGbRomSize();
    void userChoosesAGbRamSize_data();
    void userChoosesAGbRamSize();
    void userChoosesAGbaRomSize_data();
    void userChoosesAGbaRomSize();
    void userChoosesASaveType_data();
    void userChoosesASaveType();
    void userChoosesASaveSize_data();
    void userChoosesASaveSize();
    void userTicksVerify();
    void partlyCheckedIsNotChecked();

    void changingARowFromTheProgramTriggersNoSlot();
    void rowsOutsideAListAreIgnored();
    void switchingSystemsResetsTheNewOne();
    void unselectedSystemKeepsItsFields();
    void unknownSystemEmptiesTheListsAndStopsTheSlots();

    void selectSysTypeShowsTheSystem();
    void selectItem1FindsMappersAndGbaRomSizes();
    void selectItem2FindsRomSizesAndSaveTypes();
    void selectItem3FindsSaveSizes();
    void selectItem3OffersOnlyTheSizesOfTheSaveType();
    void valuesInNoRowChangeNothing();

private:
    // A choice by the user, as the combo box reports it: with keys, not through the slots.
    void choose(QComboBox *box, int row);

    Settings *m_settings = nullptr;
    std::unique_ptr<SettingsLists> m_lists;
    QList<QLabel *> m_labels;
};

void SettingsTest::init()
{
    m_settings = new Settings;
    m_lists = std::make_unique<SettingsLists>(*m_settings);
    m_labels = m_settings->findChildren<QLabel *>();
    QCOMPARE(m_labels.size(), 4);
    m_settings->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_settings));
}

void SettingsTest::cleanup()
{
    delete m_settings;
    m_settings = nullptr;
}

void SettingsTest::choose(QComboBox *box, int row)
{
    // Home stops short of a signal when the first row is shown already, so the way leads over End.
    QTest::keyClick(box, Qt::Key_End);
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < row; ++i)
        QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentIndex(), row);
}

void SettingsTest::slotsAreDeclaredInOrder()
{
    const QMetaObject &meta = Settings::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        methods << QString::fromLatin1(meta.method(i).typeName()) + " " +
                       QString::fromLatin1(meta.method(i).methodSignature());
    }
    const QStringList expected = {
        "void setSysType(int)", "void setItem2(int)",     "void setItem1(int)",
        "void setItem3(int)",   "void setCheck(int)",     "int getSysType()",
        "int getMbcType()",     "QString getMbcScript()", "int getGbRomSize()",
        "int getGbRamSize()",   "int getGbaRamType()",    "int getGbaRomSize()",
        "int getGbaRamSize()",  "bool getCheckType()"};
    QCOMPARE(methods, expected);
}

void SettingsTest::freshBoxHoldsTheGbDefaults()
{
    QCOMPARE(m_settings->title(), QString("Settings"));
    QCOMPARE(m_labels[0]->text(), QString("SYS TYPE:"));
    QCOMPARE(m_labels[1]->text(), QString("MBC TYPE:"));
    QCOMPARE(m_labels[2]->text(), QString("ROM SIZE:"));
    QCOMPARE(m_labels[3]->text(), QString("RAM SIZE:"));
    QCOMPARE(rowsOf(m_lists->system), (QStringList{"GB/GBC", "GBA"}));
    QCOMPARE(rowsOf(m_lists->item1), kMapperLabels);
    QCOMPARE(rowsOf(m_lists->item2), kGbRomLabels);
    QCOMPARE(rowsOf(m_lists->item3), kGbRamLabels);
    QCOMPARE(m_lists->system->currentText(), QString("GB/GBC"));
    QCOMPARE(m_lists->item1->currentText(), QString("MBC5"));
    QCOMPARE(m_lists->item2->currentText(), QString("256 Kbit"));
    QCOMPARE(m_lists->item3->currentText(), QString("512 B"));
    QCOMPARE(m_lists->verify->text(), QString("Verify the data after writing"));
    QVERIFY(!m_lists->verify->isChecked());

    QCOMPARE(m_settings->getSysType(), 0);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getMbcScript(), QString("gb_mbc5.nut"));
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);
    QCOMPARE(m_settings->getCheckType(), false);
}

void SettingsTest::widgetsStandInTwoColumns()
{
    const QList<QComboBox *> boxes = {m_lists->system, m_lists->item1, m_lists->item2,
                                      m_lists->item3};
    for (int i = 0; i < boxes.size(); ++i) {
        QVERIFY(m_labels[i]->geometry().right() < boxes[i]->geometry().left());
        QCOMPARE(boxes[i]->geometry().left(), m_lists->system->geometry().left());
        if (i > 0) {
            QVERIFY(boxes[i]->geometry().top() > boxes[i - 1]->geometry().bottom());
            QVERIFY(m_labels[i]->geometry().top() > m_labels[i - 1]->geometry().bottom());
        }
    }
    QVERIFY(m_lists->verify->geometry().top() > m_lists->item3->geometry().bottom());
}

void SettingsTest::userChoosesGba()
{
    choose(m_lists->system, 1);
    QCOMPARE(m_settings->getSysType(), 1);
    QCOMPARE(m_labels[0]->text(), QString("SYS TYPE:"));
    QCOMPARE(m_labels[1]->text(), QString("ROM SIZE:"));
    QCOMPARE(m_labels[2]->text(), QString("RAM TYPE:"));
    QCOMPARE(m_labels[3]->text(), QString("RAM SIZE:"));
    QCOMPARE(rowsOf(m_lists->item1), kGbaRomLabels);
    QCOMPARE(rowsOf(m_lists->item2), kSaveTypeLabels);
    QCOMPARE(rowsOf(m_lists->item3), (QStringList{"32 K", "64 K"}));
    QCOMPARE(m_lists->item1->currentText(), QString("8 Mb"));
    QCOMPARE(m_lists->item2->currentText(), QString("SRAM"));
    QCOMPARE(m_lists->item3->currentText(), QString("32 K"));
    QCOMPARE(m_settings->getGbaRomSize(), 1048576);
    QCOMPARE(m_settings->getGbaRamType(), 0);
    QCOMPARE(m_settings->getGbaRamSize(), 32768);
    QCOMPARE(m_settings->gbaRamSizeRow, 3);
}

void SettingsTest::userChoosesAMapper_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < kMapperLabels.size(); ++row)
        QTest::newRow(qPrintable(kMapperLabels[row])) << row;
}

void SettingsTest::userChoosesAMapper()
{
    QFETCH(int, row);
    choose(m_lists->item1, row);
    QCOMPARE(m_settings->getMbcType(), row);
    QCOMPARE(m_settings->getMbcScript(), kScripts[row]);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);
}

void SettingsTest::userChoosesAGbRomSize_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("size");
    for (int row = 0; row < kGbRomLabels.size(); ++row)
        QTest::newRow(qPrintable(kGbRomLabels[row])) << row << (32768 << row);
}

void SettingsTest::userChoosesAGbRomSize()
{
    QFETCH(int, row);
    QFETCH(int, size);
    choose(m_lists->item2, row);
    QCOMPARE(m_settings->getGbRomSize(), size);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRamSize(), 512);
}

void SettingsTest::userChoosesAGbRamSize_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("size");
    QTest::newRow("512 B") << 0 << 512;
    QTest::newRow("8 K") << 1 << 8192;
    QTest::newRow("32 K") << 2 << 32768;
    QTest::newRow("64 K") << 3 << 65536;
    QTest::newRow("128 K") << 4 << 131072;
}

void SettingsTest::userChoosesAGbRamSize()
{
    QFETCH(int, row);
    QFETCH(int, size);
    choose(m_lists->item3, row);
    QCOMPARE(m_settings->getGbRamSize(), size);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
}

void SettingsTest::userChoosesAGbaRomSize_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("size");
    for (int row = 0; row < kGbaRomLabels.size(); ++row)
        QTest::newRow(qPrintable(kGbaRomLabels[row])) << row << (1048576 << row);
}

void SettingsTest::userChoosesAGbaRomSize()
{
    QFETCH(int, row);
    QFETCH(int, size);
    choose(m_lists->system, 1);
    choose(m_lists->item1, row);
    QCOMPARE(m_settings->getGbaRomSize(), size);
    QCOMPARE(m_settings->getGbaRamType(), 0);
    QCOMPARE(m_settings->getGbaRamSize(), 32768);
}

void SettingsTest::userChoosesASaveType_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("offered");
    QTest::addColumn<int>("firstRow");
    QTest::addColumn<int>("size");
    QTest::newRow("SRAM") << 0 << QStringList{"32 K", "64 K"} << 3 << 32768;
    QTest::newRow("FLASH") << 1 << QStringList{"64 K", "128 K"} << 4 << 65536;
    QTest::newRow("EEP") << 2 << QStringList{"512 B", "8 K"} << 1 << 512;
}

void SettingsTest::userChoosesASaveType()
{
    QFETCH(int, row);
    QFETCH(QStringList, offered);
    QFETCH(int, firstRow);
    QFETCH(int, size);
    choose(m_lists->system, 1);
    choose(m_lists->item2, row);
    QCOMPARE(m_settings->getGbaRamType(), row);
    QCOMPARE(rowsOf(m_lists->item3), offered);
    QCOMPARE(m_lists->item3->currentIndex(), 0);
    QCOMPARE(m_settings->gbaRamSizeRow, firstRow);
    QCOMPARE(m_settings->getGbaRamSize(), size);
}

void SettingsTest::userChoosesASaveSize_data()
{
    QTest::addColumn<int>("saveType");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("size");
    QTest::newRow("SRAM first") << 0 << 0 << 32768;
    QTest::newRow("SRAM second") << 0 << 1 << 65536;
    QTest::newRow("FLASH first") << 1 << 0 << 65536;
    QTest::newRow("FLASH second") << 1 << 1 << 131072;
    QTest::newRow("EEP first") << 2 << 0 << 512;
    QTest::newRow("EEP second") << 2 << 1 << 8192;
}

void SettingsTest::userChoosesASaveSize()
{
    QFETCH(int, saveType);
    QFETCH(int, row);
    QFETCH(int, size);
    choose(m_lists->system, 1);
    choose(m_lists->item2, saveType);
    choose(m_lists->item3, row);
    QCOMPARE(m_settings->getGbaRamSize(), size);
    QCOMPARE(m_settings->getGbaRamType(), saveType);
}

void SettingsTest::userTicksVerify()
{
    QTest::keyClick(m_lists->verify, Qt::Key_Space);
    QCOMPARE(m_settings->getCheckType(), true);
    QTest::keyClick(m_lists->verify, Qt::Key_Space);
    QCOMPARE(m_settings->getCheckType(), false);
}

void SettingsTest::partlyCheckedIsNotChecked()
{
    m_lists->verify->setChecked(true);
    QCOMPARE(m_settings->getCheckType(), true);
    m_lists->verify->setTristate(true);
    m_lists->verify->setCheckState(Qt::PartiallyChecked);
    QCOMPARE(m_settings->getCheckType(), false);
    m_settings->setCheck(2);
    QCOMPARE(m_settings->getCheckType(), true);
    m_settings->setCheck(1);
    QCOMPARE(m_settings->getCheckType(), false);
}

void SettingsTest::changingARowFromTheProgramTriggersNoSlot()
{
    m_lists->item1->setCurrentIndex(1);
    m_lists->item2->setCurrentIndex(3);
    m_lists->item3->setCurrentIndex(2);
    m_lists->system->setCurrentIndex(1);
    QCOMPARE(m_settings->getSysType(), 0);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);
    // The script follows what is shown.
    QCOMPARE(m_settings->getMbcScript(), QString("gb_mbc1.nut"));
}

void SettingsTest::rowsOutsideAListAreIgnored()
{
    for (const int row : {-1, 9, 1000}) {
        m_settings->setItem1(row);
        m_settings->setItem2(row);
        m_settings->setItem3(row);
    }
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);

    m_settings->selectSysType(1);
    for (const int row : {-1, 9, 1000}) {
        m_settings->setItem1(row);
        m_settings->setItem2(row);
        m_settings->setItem3(row);
    }
    m_settings->setItem3(2); // a row of the size table, but not one that is offered
    QCOMPARE(m_settings->getGbaRomSize(), 1048576);
    QCOMPARE(m_settings->getGbaRamType(), 0);
    QCOMPARE(m_settings->getGbaRamSize(), 32768);
}

void SettingsTest::switchingSystemsResetsTheNewOne()
{
    choose(m_lists->item1, 1);
    choose(m_lists->item2, 8);
    choose(m_lists->item3, 4);
    choose(m_lists->system, 1);
    choose(m_lists->item1, 6);
    choose(m_lists->item2, 2);
    choose(m_lists->item3, 1);
    choose(m_lists->system, 0);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);
    QCOMPARE(m_labels[1]->text(), QString("MBC TYPE:"));
    QCOMPARE(m_labels[2]->text(), QString("ROM SIZE:"));
    choose(m_lists->system, 1);
    QCOMPARE(m_settings->getGbaRomSize(), 1048576);
    QCOMPARE(m_settings->getGbaRamType(), 0);
    QCOMPARE(m_settings->getGbaRamSize(), 32768);
    QCOMPARE(m_settings->gbaRamSizeRow, 3);
}

void SettingsTest::unselectedSystemKeepsItsFields()
{
    m_settings->selectItem1(1);
    m_settings->selectItem2(131072);
    m_settings->selectItem3(8192);
    m_settings->selectSysType(1);
    QCOMPARE(m_settings->getMbcType(), 1);
    QCOMPARE(m_settings->getGbRomSize(), 131072);
    QCOMPARE(m_settings->getGbRamSize(), 8192);
}

void SettingsTest::unknownSystemEmptiesTheListsAndStopsTheSlots()
{
    m_settings->setSysType(2);
    QCOMPARE(m_settings->getSysType(), 2);
    QCOMPARE(m_lists->item1->count(), 0);
    QCOMPARE(m_lists->item2->count(), 0);
    QCOMPARE(m_lists->item3->count(), 0);
    QCOMPARE(m_labels[1]->text(), QString("MBC TYPE:"));
    QCOMPARE(m_settings->getMbcScript(), QString());

    m_settings->setItem1(1);
    m_settings->setItem2(1);
    m_settings->setItem3(1);
    m_settings->setCheck(2);
    m_settings->selectItem1(1);
    m_settings->selectItem2(65536);
    m_settings->selectItem3(8192);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);
    QCOMPARE(m_settings->getCheckType(), false);
}

void SettingsTest::selectSysTypeShowsTheSystem()
{
    m_settings->selectSysType(1);
    QCOMPARE(m_lists->system->currentIndex(), 1);
    QCOMPARE(m_settings->getSysType(), 1);
    QCOMPARE(rowsOf(m_lists->item1), kGbaRomLabels);
    m_settings->selectSysType(0);
    QCOMPARE(m_lists->system->currentIndex(), 0);
    QCOMPARE(m_settings->getSysType(), 0);
    QCOMPARE(rowsOf(m_lists->item1), kMapperLabels);
}

void SettingsTest::selectItem1FindsMappersAndGbaRomSizes()
{
    for (int mapper = 0; mapper < kMapperLabels.size(); ++mapper) {
        m_settings->selectItem1(mapper);
        QCOMPARE(m_lists->item1->currentIndex(), mapper);
        QCOMPARE(m_settings->getMbcType(), mapper);
        QCOMPARE(m_settings->getMbcScript(), kScripts[mapper]);
    }
    m_settings->selectSysType(1);
    for (int row = 0; row < kGbaRomLabels.size(); ++row) {
        m_settings->selectItem1(1048576 << row);
        QCOMPARE(m_lists->item1->currentIndex(), row);
        QCOMPARE(m_settings->getGbaRomSize(), 1048576 << row);
    }
}

void SettingsTest::selectItem2FindsRomSizesAndSaveTypes()
{
    for (int row = 0; row < kGbRomLabels.size(); ++row) {
        m_settings->selectItem2(32768 << row);
        QCOMPARE(m_lists->item2->currentIndex(), row);
        QCOMPARE(m_settings->getGbRomSize(), 32768 << row);
    }
    m_settings->selectSysType(1);
    const QList<int> firstSizes = {32768, 65536, 512};
    for (int type = 0; type < 3; ++type) {
        m_settings->selectItem2(type);
        QCOMPARE(m_lists->item2->currentIndex(), type);
        QCOMPARE(m_settings->getGbaRamType(), type);
        QCOMPARE(m_settings->getGbaRamSize(), firstSizes[type]);
        QCOMPARE(m_lists->item3->count(), 2);
    }
}

void SettingsTest::selectItem3FindsSaveSizes()
{
    const QList<int> sizes = {512, 8192, 32768, 65536, 131072};
    for (int row = 0; row < sizes.size(); ++row) {
        m_settings->selectItem3(sizes[row]);
        QCOMPARE(m_lists->item3->currentIndex(), row);
        QCOMPARE(m_settings->getGbRamSize(), sizes[row]);
    }
}

void SettingsTest::selectItem3OffersOnlyTheSizesOfTheSaveType()
{
    m_settings->selectSysType(1);
    const QList<QList<int>> fitting = {{32768, 65536}, {65536, 131072}, {512, 8192}};
    for (int type = 0; type < 3; ++type) {
        for (const int size : {0, 512, 8192, 32768, 65536, 131072}) {
            m_settings->selectItem2(type);
            m_settings->selectItem3(size);
            const int row = fitting[type].indexOf(size);
            QCOMPARE(m_lists->item3->currentIndex(), row < 0 ? 0 : row);
            QCOMPARE(m_settings->getGbaRamSize(), row < 0 ? fitting[type][0] : size);
        }
    }
}

void SettingsTest::valuesInNoRowChangeNothing()
{
    m_settings->selectItem3(2048); // what a header with RAM code 1 asks for
    m_settings->selectItem1(7);
    m_settings->selectItem2(32769);
    QCOMPARE(m_lists->item1->currentIndex(), 4);
    QCOMPARE(m_lists->item2->currentIndex(), 0);
    QCOMPARE(m_lists->item3->currentIndex(), 0);
    QCOMPARE(m_settings->getMbcType(), 4);
    QCOMPARE(m_settings->getGbRomSize(), 32768);
    QCOMPARE(m_settings->getGbRamSize(), 512);

    m_settings->selectSysType(1);
    m_settings->selectItem1(0);
    m_settings->selectItem2(3);
    m_settings->selectItem3(0); // a game without known save memory
    QCOMPARE(m_lists->item1->currentIndex(), 0);
    QCOMPARE(m_lists->item2->currentIndex(), 0);
    QCOMPARE(m_settings->getGbaRomSize(), 1048576);
    QCOMPARE(m_settings->getGbaRamType(), 0);
    QCOMPARE(m_settings->getGbaRamSize(), 32768);
}

GBDRIVER_TEST(SettingsTest, gui)
#include "settings_test.moc"
