// Images made by the program, without mounting anything.
#include "files.h"
#include "samples.h"
#include "test_class.h"
#include "virtual/fuse/reader_program.h"
#include "virtual/gba_save_library.h"
#include "virtual/image_generator.h"
#include "virtual/save_file.h"

#include <QTemporaryDir>
#include <QtTest>

#include <string>
#include <vector>

using namespace virtual_reader;

class ReaderProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void gbaImageIsMade();
    void saveTypePlantsTheMark_data();
    void saveTypePlantsTheMark();
    void impossibleGbaImageIsNotMade();

private:
    std::string path(const char *name) const { return m_folder.filePath(name).toStdString(); }
    static int run(std::vector<std::string> arguments);

    QTemporaryDir m_folder;
};

int ReaderProgramTest::run(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "gbdriver-virtual-reader");
    std::vector<char *> list;
    for (std::string &argument : arguments)
        list.push_back(argument.data());
    return runReaderProgram(static_cast<int>(list.size()), list.data());
}

void ReaderProgramTest::gbaImageIsMade()
{
    QCOMPARE(run({"--make-image", path("made.gba"), "--system", "gba", "--code", "AWRP",
                  "--rom-size", "3M", "--title", "MADE", "--seed", "9"}),
             0);
    GbaImageSpec spec;
    spec.code = "AWRP";
    spec.romSize = 3 * 1024 * 1024;
    spec.title = "MADE";
    spec.seed = 9;
    QVERIFY(contentOf(QString::fromStdString(path("made.gba"))) == toByteArray(gbaImage(spec)));
}

void ReaderProgramTest::saveTypePlantsTheMark_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<int>("kind");
    const auto row = [](const char *type, const char *size, SaveKind kind) {
        QTest::addRow("%s %s", type, size) << QByteArray(type) << QByteArray(size) << int(kind);
    };
    row("sram", "64K", SaveKind::Sram);
    row("flash", "64K", SaveKind::Flash64k);
    row("flash", "128K", SaveKind::Flash128k);
    row("eep", "512", SaveKind::Eeprom512);
    row("none", "", SaveKind::None);
}

void ReaderProgramTest::saveTypePlantsTheMark()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, size);
    QFETCH(int, kind);
    std::vector<std::string> arguments = {
        "--make-image", path("marked.gba"), "--system", "gba", "--rom-size", "1M", "--save-type"};
    arguments.push_back(type.toStdString());
    if (!size.isEmpty())
        arguments.insert(arguments.end(), {"--save-size", size.toStdString()});
    QCOMPARE(run(arguments), 0);
    ByteVector image;
    std::string error;
    QVERIFY2(readWholeFile(path("marked.gba"), &image, &error), error.c_str());
    QCOMPARE(int(findGbaSaveMark(image)), kind);
}

void ReaderProgramTest::impossibleGbaImageIsNotMade()
{
    QCOMPARE(run({"--make-image", path("bad.gba"), "--system", "gba", "--code", "TOOLONG"}), 1);
    QCOMPARE(run({"--make-image", path("bad.gba"), "--system", "gba", "--save-type", "eep",
                  "--save-size", "1K"}),
             1);
    QVERIFY(!QFile::exists(m_folder.filePath("bad.gba")));
}

GBDRIVER_TEST(ReaderProgramTest, none)
#include "reader_program_test.moc"
