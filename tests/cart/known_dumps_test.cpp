// The compiled table of known dumps against the file it is made from, and the search in it.
#include "cart/known_dump_table.h"
#include "cart/known_dumps.h"
#include "test_class.h"

#include <QFile>
#include <QMap>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

struct ListedDump {
    QByteArray system;
    QByteArray title;
    quint32 size = 0;
    QByteArray crc32;
    QByteArray sha1; // 20 bytes
};

// The rows of the file; empty if it cannot be read or a row has not five values.
QVector<ListedDump> readKnownDumps()
{
    QFile file(QStringLiteral(KNOWN_DUMPS));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QVector<ListedDump> dumps;
    file.readLine(); // the names of the columns
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        line.chop(1);
        const QList<QByteArray> values = line.split('\t');
        if (values.size() != 5)
            return {};
        dumps.append(
            {values[0], values[1], values[2].toUInt(), values[3], QByteArray::fromHex(values[4])});
    }
    return dumps;
}

Sha1Digest digestOf(const QByteArray &bytes)
{
    Sha1Digest digest{};
    std::copy_n(bytes.begin(), std::min(static_cast<std::size_t>(bytes.size()), digest.size()),
                digest.begin());
    return digest;
}

QByteArray hexOf(quint32 number)
{
    return QByteArray::number(number, 16).rightJustified(8, '0');
}

} // namespace

class KnownDumpsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileIsSortedByChecksums();
    void titlesAreUtf8();
    void everyRowIsFound();
    void tableIsSorted();
    void tableIsSmall();
    void rowsBySystem_data();
    void rowsBySystem();
    void doubtedImagesAreTold();
    void imagesWithTwoTitlesHaveBoth();
    void otherImagesAreNotFound_data();
    void otherImagesAreNotFound();

private:
    QVector<ListedDump> m_dumps;
};

void KnownDumpsTest::initTestCase()
{
    m_dumps = readKnownDumps();
    QCOMPARE(m_dumps.size(), 6478);
    QCOMPARE(knownDumpCount, std::size_t{6478});
}

void KnownDumpsTest::fileIsSortedByChecksums()
{
    for (int row = 1; row < m_dumps.size(); ++row) {
        const ListedDump &before = m_dumps[row - 1];
        const ListedDump &dump = m_dumps[row];
        QVERIFY2(before.crc32 + before.sha1 <= dump.crc32 + dump.sha1, dump.title.constData());
    }
}

void KnownDumpsTest::titlesAreUtf8()
{
    for (const ListedDump &dump : std::as_const(m_dumps))
        QVERIFY2(QString::fromUtf8(dump.title).toUtf8() == dump.title, dump.title.toHex());
}

void KnownDumpsTest::everyRowIsFound()
{
    for (const ListedDump &row : std::as_const(m_dumps)) {
        const auto dump = findKnownDump(row.size, digestOf(row.sha1));
        QVERIFY2(dump.has_value(), row.title.constData());
        QVERIFY2(row.title == dump->title || row.title == dump->otherTitle, row.title.constData());
        QCOMPARE(QByteArray(dump->system), row.system);
        QCOMPARE(dump->size, row.size);
        QCOMPARE(hexOf(dump->crc32), row.crc32);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(dump->sha1), 20), row.sha1);
    }
}

void KnownDumpsTest::tableIsSorted()
{
    for (std::size_t row = 1; row < knownDumpCount; ++row) {
        const KnownDumpRecord &record = knownDumpRecords[row];
        QVERIFY(std::memcmp(knownDumpRecords[row - 1].sha1, record.sha1, sizeof record.sha1) <= 0);
    }
}

void KnownDumpsTest::tableIsSmall()
{
    const std::size_t bytes = knownDumpCount * sizeof(KnownDumpRecord) + knownDumpTitleBytes;
    QVERIFY2(bytes < 500000, QByteArray::number(static_cast<qulonglong>(bytes)));
}

void KnownDumpsTest::rowsBySystem_data()
{
    QTest::addColumn<QByteArray>("system");
    QTest::addColumn<int>("rows");
    QTest::newRow("Game Boy") << QByteArray("GB") << 1739;
    QTest::newRow("Game Boy Color") << QByteArray("GBC") << 1715;
    QTest::newRow("Game Boy Advance") << QByteArray("GBA") << 3024;
}

void KnownDumpsTest::rowsBySystem()
{
    QFETCH(QByteArray, system);
    QFETCH(int, rows);
    const auto *end = knownDumpRecords + knownDumpCount;
    QCOMPARE(static_cast<int>(std::count_if(knownDumpRecords, end,
                                            [&](const KnownDumpRecord &record) {
                                                return system == kKnownDumpSystems[record.system];
                                            })),
             rows);
}

void KnownDumpsTest::doubtedImagesAreTold()
{
    int doubted = 0;
    for (const ListedDump &row : std::as_const(m_dumps)) {
        const bool isDoubted = findKnownDump(row.size, digestOf(row.sha1))->isDoubted;
        QVERIFY2(isDoubted == row.title.contains("bad dump?"), row.title.constData());
        doubted += isDoubted ? 1 : 0;
    }
    QCOMPARE(doubted, 7);
}

void KnownDumpsTest::imagesWithTwoTitlesHaveBoth()
{
    QMap<QByteArray, QVector<ListedDump>> rowsOfImage;
    for (const ListedDump &row : std::as_const(m_dumps))
        rowsOfImage[row.sha1].append(row);
    int withTwo = 0;
    for (const QVector<ListedDump> &rows : std::as_const(rowsOfImage)) {
        const auto dump = findKnownDump(rows[0].size, digestOf(rows[0].sha1));
        QCOMPARE(QByteArray(dump->title), rows[0].title);
        QCOMPARE(QByteArray(dump->otherTitle), rows.size() == 1 ? QByteArray() : rows[1].title);
        withTwo += rows.size() == 1 ? 0 : 1;
    }
    QCOMPARE(withTwo, 2);
}

void KnownDumpsTest::otherImagesAreNotFound_data()
{
    const QByteArray known = QByteArray::fromHex("383b6205d688d9640cb6930c02add46873f8a10d");
    const auto changed = [&](int byte) {
        QByteArray sha1 = known;
        sha1[byte] = static_cast<char>(sha1[byte] ^ 1);
        return sha1;
    };
    QTest::addColumn<quint32>("size");
    QTest::addColumn<QByteArray>("sha1");
    QTest::addColumn<bool>("isKnown");
    QTest::newRow("known") << 16777216U << known << true;
    QTest::newRow("half the size") << 8388608U << known << false;
    QTest::newRow("size 0") << 0U << known << false;
    QTest::newRow("first byte differs") << 16777216U << changed(0) << false;
    QTest::newRow("last byte differs") << 16777216U << changed(19) << false;
    QTest::newRow("before the first row") << 16777216U << QByteArray(20, '\0') << false;
    QTest::newRow("behind the last row") << 16777216U << QByteArray(20, '\xFF') << false;
}

void KnownDumpsTest::otherImagesAreNotFound()
{
    QFETCH(quint32, size);
    QFETCH(QByteArray, sha1);
    QFETCH(bool, isKnown);
    QCOMPARE(findKnownDump(size, digestOf(sha1)).has_value(), isKnown);
}

GBDRIVER_TEST(KnownDumpsTest, none)
#include "known_dumps_test.moc"
