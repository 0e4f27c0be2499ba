#include "ui/settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
template <typename Table> void insertLabels(QComboBox *box, const Table &table)
{
    for (const auto &row : table)
        box->insertItem(row.index, QString::fromLatin1(row.label));
}

// Keeps the value of the row that the user chose.
template <typename Table> void keepRow(const Table &table, int row, int *field)
{
    if (hasRow(table, row))
        *field = table[static_cast<std::size_t>(row)].value;
}

// Shows and keeps `value`. Returns: false, with nothing changed, if the list does not hold it.
template <typename Table>
bool selectValue(const Table &table, int value, QComboBox *box, int *field)
{
    const int row = rowWithValue(table, value);
    if (row == kNoRow)
        return false;
    box->setCurrentIndex(row);
    *field = value;
    return true;
}

// Shows a fresh list with its first row chosen.
template <typename Table> void fill(const Table &table, QComboBox *box, int *field)
{
    insertLabels(box, table);
    box->setCurrentIndex(0);
    *field = table[0].value;
}

// Leaves the wheel to what lies around a list that has no focus: whoever scrolls past must not
// change a size unnoticed.
class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *list = static_cast<const QWidget *>(watched);
        if (event->type() != QEvent::Wheel || list->hasFocus())
            return false;
        event->ignore();
        return true;
    }
};
} // namespace

Settings::Settings(QWidget *parent) : QGroupBox(tr("Settings"), parent)
{
    buildWidgets();
    insertLabels(m_sysBox, kSystems);
    m_sysBox->setCurrentIndex(0);
    repopulate(sysType);
    layOutWidgets();
    connectWidgets();
}

void Settings::buildWidgets()
{
    m_sysLabel = new QLabel(tr("SYS TYPE:"), this);
    m_item1Label = new QLabel(this);
    m_item2Label = new QLabel(this);
    m_item3Label = new QLabel(this);
    m_sysBox = new QComboBox(this);
    m_item1Box = new QComboBox(this);
    m_item2Box = new QComboBox(this);
    m_item3Box = new QComboBox(this);
    m_verifyBox = new QCheckBox(tr("Verify the data after writing"), this);

    // The label names its list to assistive programs, whatever it says at the time.
    m_sysLabel->setBuddy(m_sysBox);
    m_item1Label->setBuddy(m_item1Box);
    m_item2Label->setBuddy(m_item2Box);
    m_item3Label->setBuddy(m_item3Box);
    m_sysBox->setAccessibleDescription(tr("What kind of cartridge is in the slot"));
    m_item1Box->setAccessibleDescription(tr("GB/GBC: the mapper; GBA: the size of the ROM"));
    m_item2Box->setAccessibleDescription(tr("GB/GBC: the size of the ROM; GBA: the kind of save"));
    m_item3Box->setAccessibleDescription(tr("The size of the save memory"));
    m_verifyBox->setAccessibleDescription(tr("Reads back what was written and compares it"));
    auto *wheelGuard = new WheelGuard(this);
    for (QComboBox *box : {m_sysBox, m_item1Box, m_item2Box, m_item3Box}) {
        box->setFocusPolicy(Qt::StrongFocus); // the wheel does not give the focus either
        box->installEventFilter(wheelGuard);
    }
}

void Settings::layOutWidgets()
{
    auto *labels = new QVBoxLayout;
    for (QLabel *label : {m_sysLabel, m_item1Label, m_item2Label, m_item3Label})
        labels->addWidget(label);
    auto *boxes = new QVBoxLayout;
    for (QComboBox *box : {m_sysBox, m_item1Box, m_item2Box, m_item3Box})
        boxes->addWidget(box);

    auto *columns = new QHBoxLayout;
    columns->addLayout(labels);
    columns->addLayout(boxes);
    auto *all = new QVBoxLayout;
    all->addLayout(columns);
    all->addWidget(m_verifyBox);
    setLayout(all);
}

void Settings::connectWidgets()
{
    connect(m_sysBox, SIGNAL(activated(int)), this, SLOT(setSysType(int)));
    connect(m_item1Box, SIGNAL(activated(int)), this, SLOT(setItem1(int)));
    connect(m_item2Box, SIGNAL(activated(int)), this, SLOT(setItem2(int)));
    connect(m_item3Box, SIGNAL(activated(int)), this, SLOT(setItem3(int)));
    connect(m_verifyBox, SIGNAL(stateChanged(int)), this, SLOT(setCheck(int)));
}

void Settings::setSysType(int type)
{
    sysType = type;
    repopulate(type);
}

void Settings::setItem1(int index)
{
    if (sysType == kSystemGb)
        keepRow(kMappers, index, &mbcType);
    else if (sysType == kSystemGba)
        keepRow(kGbaRomSizes, index, &gbaRomSize);
}

void Settings::setItem2(int index)
{
    if (sysType == kSystemGb) {
        keepRow(kGbRomSizes, index, &gbRomSize);
    } else if (sysType == kSystemGba && hasRow(kGbaSaveTypes, index)) {
        keepRow(kGbaSaveTypes, index, &gbaRamType);
        refillGbaRamSizes(gbaRamType);
    }
}

void Settings::setItem3(int index)
{
    if (sysType == kSystemGb)
        keepRow(kGbRamSizes, index, &gbRamSize);
    else if (sysType == kSystemGba && index >= 0 && index < kOfferedSaveSizes)
        keepRow(kGbaSaveSizes, gbaRamSizeRow + index, &gbaRamSize);
}

void Settings::setCheck(int index)
{
    if (sysType == kSystemGb || sysType == kSystemGba)
        verify = index == Qt::Checked;
}

int Settings::getSysType()
{
    return sysType;
}

int Settings::getMbcType()
{
    return mbcType;
}

QString Settings::getMbcScript()
{
    const int row = m_item1Box->currentIndex();
    if (!hasRow(kMappers, row))
        return QString();
    return QString::fromLatin1(kMappers[static_cast<std::size_t>(row)].script);
}

int Settings::getGbRomSize()
{
    return gbRomSize;
}

int Settings::getGbRamSize()
{
    return gbRamSize;
}

int Settings::getGbaRamType()
{
    return gbaRamType;
}

int Settings::getGbaRomSize()
{
    return gbaRomSize;
}

int Settings::getGbaRamSize()
{
    return gbaRamSize;
}

bool Settings::getCheckType()
{
    return verify;
}

void Settings::repopulate(int type)
{
    for (QComboBox *box : {m_item1Box, m_item2Box, m_item3Box})
        box->clear();
    if (type == kSystemGb)
        repopulateGb();
    else if (type == kSystemGba)
        repopulateGba();
}

void Settings::repopulateGb()
{
    m_item1Label->setText(tr("MBC TYPE:"));
    m_item2Label->setText(tr("ROM SIZE:"));
    m_item3Label->setText(tr("RAM SIZE:"));
    // MBC5 is the mapper of most cartridges, and the one that writable cartridges imitate.
    insertLabels(m_item1Box, kMappers);
    selectItem1(kMappers[kMapperMbc5Row].value);
    fill(kGbRomSizes, m_item2Box, &gbRomSize);
    fill(kGbRamSizes, m_item3Box, &gbRamSize);
}

void Settings::repopulateGba()
{
    m_item1Label->setText(tr("ROM SIZE:"));
    m_item2Label->setText(tr("RAM TYPE:"));
    m_item3Label->setText(tr("RAM SIZE:"));
    fill(kGbaRomSizes, m_item1Box, &gbaRomSize);
    fill(kGbaSaveTypes, m_item2Box, &gbaRamType);
    refillGbaRamSizes(gbaRamType);
}

void Settings::refillGbaRamSizes(int ramType)
{
    const int offered = offeredSaveSizes(ramType);
    if (offered != kNoRow)
        gbaRamSizeRow = offered;
    m_item3Box->clear();
    for (int i = 0; i < kOfferedSaveSizes; ++i) {
        const SettingRow &row = kGbaSaveSizes[static_cast<std::size_t>(gbaRamSizeRow + i)];
        m_item3Box->insertItem(i, QString::fromLatin1(row.label));
    }
    m_item3Box->setCurrentIndex(0);
    setItem3(0);
}

void Settings::selectSysType(int type)
{
    setSysType(type);
    m_sysBox->setCurrentIndex(type);
}

void Settings::selectItem1(int value)
{
    if (sysType == kSystemGb)
        selectValue(kMappers, value, m_item1Box, &mbcType);
    else if (sysType == kSystemGba)
        selectValue(kGbaRomSizes, value, m_item1Box, &gbaRomSize);
}

void Settings::selectItem2(int value)
{
    if (sysType == kSystemGb)
        selectValue(kGbRomSizes, value, m_item2Box, &gbRomSize);
    else if (sysType == kSystemGba && selectValue(kGbaSaveTypes, value, m_item2Box, &gbaRamType))
        refillGbaRamSizes(value);
}

void Settings::selectItem3(int value)
{
    if (sysType == kSystemGb) {
        selectValue(kGbRamSizes, value, m_item3Box, &gbRamSize);
        return;
    }
    if (sysType != kSystemGba)
        return;
    const int row = rowWithValue(kGbaSaveSizes, value) - gbaRamSizeRow;
    if (row < 0 || row >= kOfferedSaveSizes)
        return;
    m_item3Box->setCurrentIndex(row);
    gbaRamSize = value;
}
