#include "ui/tab_about.h"

#include "ui/maker.h"

#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace
{
// Holders and years as the licences of the libraries have them.
QString credits()
{
    return TabAbout::tr("* Squirrel 3.1 stable, Copyright (c) 2003-2016\n"
                        "  Alberto Demichelis\n"
                        "\n"
                        "* Qt 5.7, Copyright (c) 2016-2020\n"
                        "  The Qt Company Ltd.");
}

// Not translated: a translation must not change whose program this is.
QString makerNotice()
{
    return QStringLiteral("Copyright (c) %1\n%2")
        .arg(QString::fromUtf8(kMakerYears), QString::fromUtf8(kMakerName));
}

QString anchor(const QString &target, const QString &shown)
{
    return QStringLiteral("<a href=\"%1\">%2</a>").arg(target, shown);
}

QString webAnchor()
{
    const QString address = QString::fromUtf8(kMakerWebAddress);
    return anchor(address, address);
}

QString emailAnchor()
{
    const QString address = QString::fromUtf8(kMakerEmail);
    return anchor(QStringLiteral("mailto:") + address, address);
}

QString purpose()
{
    return TabAbout::tr("This program and device, called set, enables to:\n"
                        "- make game backups from owned cartridges and play them on PC,\n"
                        "- transfer game saves between cartridge and PC,\n"
                        "- test written by yourself games directly on console \n"
                        "  (rewritable cartridge required).\n");
}

void addText(QVBoxLayout *layout, const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(label);
}

void addLink(QVBoxLayout *layout, const QString &text)
{
    auto *label = new QLabel(text);
    label->setOpenExternalLinks(true);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    layout->addWidget(label);
}
} // namespace

TabAbout::TabAbout(const QFileInfo & /*fileInfo*/, QWidget *parent) : QWidget(parent)
{
    auto *mainLayout = new QVBoxLayout(this);
    setWindowTitle(tr("About"));

    auto *group = new QGroupBox(tr("Velora Cartridge Driver/Dumper"));
    auto *groupLayout = new QVBoxLayout(group);
    addText(groupLayout, credits());
    addText(groupLayout, tr("GB/GBC/GBA Cartridge Dumper"));
    addText(groupLayout, makerNotice());
    addLink(groupLayout, tr("Web site: ") + webAnchor());
    addLink(groupLayout, tr("Email: ") + emailAnchor());
    addText(groupLayout, purpose());

    mainLayout->addWidget(group);
}
