// Where everything stands in the window. The toolkits it is built with may differ by what their
// fonts do, and by nothing else.
#include "app/tab_dialog.h"
#include "test_class.h"
#include "usual_font.h"

#include <QApplication>
#include <QTabWidget>
#include <QtTest>

#include <cstdlib>
#include <memory>

namespace
{
// Pixels. Texts are as wide with every Qt, but for how a width is rounded. A line of text is 15
// pixels high with Qt 5 and 14 with Qt 6, and up to nine of them stand one below the other.
constexpr int kAcross = 2;
constexpr int kDown = 9;

struct Place {
    const char *name;
    QRect area; // in the window
};

constexpr QSize kWindow(473, 477);
const Place kCorner = {"Reader: No reader", {386, 14, 76, 22}};

// As Qt 5.15 lays it out, tab by tab.
const QVector<QVector<Place>> kTabs = {
    {
        kCorner,
        {"Settings", {22, 47, 215, 179}},
        {"Info", {243, 53, 208, 23}},
        {"SYS TYPE:", {34, 77, 93, 23}},
        {"GB/GBC", {133, 77, 92, 23}},
        {"Dump", {243, 88, 208, 23}},
        {"MBC TYPE:", {34, 106, 93, 23}},
        {"MBC5", {133, 106, 92, 23}},
        {"FLASH", {243, 123, 208, 23}},
        {"ROM SIZE:", {34, 135, 93, 23}},
        {"256 Kbit", {133, 135, 92, 23}},
        {"Read RAM", {243, 158, 208, 23}},
        {"RAM SIZE:", {34, 164, 93, 23}},
        {"512 B", {133, 164, 92, 23}},
        {"Verify the data after writing", {34, 193, 191, 21}},
        {"Write RAM", {243, 193, 208, 23}},
        {"Log", {22, 232, 429, 194}},
        {"Progress", {22, 432, 343, 23}},
        {"Cancel", {371, 432, 80, 23}},
    },
    {
        kCorner,
        {"Update Firmware", {22, 47, 429, 23}},
        {"Log", {22, 76, 429, 350}},
        {"Progress", {22, 432, 429, 23}},
    },
    {
        kCorner,
        {"Velora Cartridge Driver/Dumper", {22, 47, 429, 408}},
        {"* Squirrel 3.1 stable, Copyright (c) 2003-2016", {34, 77, 405, 75}},
        {"GB/GBC/GBA Cartridge Dumper", {34, 158, 405, 43}},
        {"Copyright (c) 2026", {34, 207, 405, 43}},
        {"Web site:", {34, 256, 405, 42}},
        {"Email:", {34, 304, 405, 43}},
        {"This program and device, called set, enables to:", {34, 353, 405, 90}},
    },
};

// What a screen reader says, the first line of the text or what is chosen; empty: a frame around
// others, or part of a widget that has a name.
QString nameOf(const QWidget &widget)
{
    for (const char *property : {"accessibleName", "text", "title", "currentText"}) {
        const QString name = widget.property(property).toString();
        if (!name.isEmpty())
            return name.section('\n', 0, 0).section('<', 0, 0).trimmed();
    }
    return {};
}

bool isClose(const QRect &area, const QRect &wanted)
{
    return std::abs(area.x() - wanted.x()) <= kAcross && std::abs(area.y() - wanted.y()) <= kDown &&
           std::abs(area.width() - wanted.width()) <= kAcross &&
           std::abs(area.height() - wanted.height()) <= kDown;
}

QString areaText(const QRect &area)
{
    return QString("%1,%2 %3x%4").arg(area.x()).arg(area.y()).arg(area.width()).arg(area.height());
}
} // namespace

class WindowPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void windowWantsItsSize();
    void everythingHasItsPlace_data();
    void everythingHasItsPlace();

private:
    QMap<QString, QRect> shown() const;

    std::unique_ptr<TabDialog> m_window;
    QTabWidget *m_tabs = nullptr;
};

void WindowPlacesTest::initTestCase()
{
    QApplication::setStyle("fusion");
    QVERIFY2(useUsualFont(), "there is no font DejaVu Sans");
    m_window = std::make_unique<TabDialog>(".");
    m_window->resize(kWindow); // screens are smaller on some platforms
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_tabs = m_window->findChild<QTabWidget *>();
}

QMap<QString, QRect> WindowPlacesTest::shown() const
{
    QMap<QString, QRect> places;
    for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
        if (widget->isVisible() && !nameOf(*widget).isEmpty())
            places[nameOf(*widget)] = {widget->mapTo(m_window.get(), QPoint()), widget->size()};
    }
    return places;
}

void WindowPlacesTest::windowWantsItsSize()
{
    const QRect area({}, m_window->sizeHint());
    QVERIFY2(isClose(area, QRect({}, kWindow)), qPrintable(areaText(area)));
}

void WindowPlacesTest::everythingHasItsPlace_data()
{
    QTest::addColumn<int>("tab");
    for (int tab = 0; tab < kTabs.size(); ++tab)
        QTest::newRow(qPrintable(m_tabs->tabText(tab))) << tab;
}

void WindowPlacesTest::everythingHasItsPlace()
{
    QFETCH(int, tab);
    m_tabs->setCurrentIndex(tab);
    QMap<QString, QRect> places = shown();
    QStringList problems;
    for (const Place &place : kTabs[tab]) {
        const QRect area = places.take(place.name);
        if (!isClose(area, place.area))
            problems
                << QString("%1: %2, not %3").arg(place.name, areaText(area), areaText(place.area));
    }
    for (const QString &name : places.keys())
        problems << QString("%1: %2, in no list").arg(name, areaText(places[name]));
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
}

GBDRIVER_TEST(WindowPlacesTest, gui)
#include "window_places_test.moc"
