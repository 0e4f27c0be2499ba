// The update tab and its worker: looks, slots, connections, and the complete log of each press.
#include "log_check.h"
#include "translators.h"

#include "test_class.h"
#include "ui/firmware_update_tab.h"
#include "worker/update_thread.h"

#include <QBoxLayout>
#include <QDialog>
#include <QMetaMethod>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <atomic>
#include <memory>

namespace
{
const QStringList kOpening = {"First turn off anti-virus software.",
                              "Next press \"Update Firmware\" to update firmware.", "\r\n"};
const char kNothingSent[] = "Nothing was sent to the reader: this program transfers no firmware.";
const QStringList kUpdate = {"Starting update firmware , pelase wait...",
                             "Update firmware successful.", ">Success!", "<hr><br>", kNothingSent};

// Methods that the class itself declares, as "signal void public name(types) names".
QStringList declaredMethods(const QMetaObject &meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QStringList words;
        words << (method.methodType() == QMetaMethod::Signal ? "signal" : "slot")
              << method.typeName() << (method.access() == QMetaMethod::Public ? "public" : "hidden")
              << QString::fromLatin1(method.methodSignature())
              << QString::fromLatin1(method.parameterNames().join(','));
        methods << words.join(' ').trimmed();
    }
    return methods;
}

QList<QObject *> itemsOf(const QBoxLayout &layout)
{
    QList<QObject *> items;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        items << (item->widget() ? static_cast<QObject *>(item->widget()) : item->layout());
    }
    return items;
}

// Tells at each moment in which `button` is enabled whether `thread` runs.
class EnabledWatch : public QObject
{
public:
    EnabledWatch(QPushButton *button, const QThread *thread) : m_button(button), m_thread(thread)
    {
        button->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange && m_button->isEnabled()) {
            runningThen << m_thread->isRunning();
            enabled.release();
        }
        return false;
    }

    QList<bool> runningThen;
    QSemaphore enabled;

private:
    const QPushButton *m_button;
    const QThread *m_thread;
};

QStringList *threadWarnings = nullptr;

void collectThreadWarnings(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (message.contains("QThread") || message.contains("QObject"))
        *threadWarnings << message;
}
} // namespace

#define COMPARE_WHOLE_LOG(lines)                                                                   \
    do {                                                                                           \
        const QStringList expectedLog = kOpening + QStringList(lines);                             \
        QCOMPARE(m_tab->console->toPlainText(), plainLog(expectedLog));                            \
        QCOMPARE(m_tab->console->toHtml(), richLog(expectedLog));                                  \
        QVERIFY(m_tab->console->textCursor().atEnd());                                             \
    } while (false)

class FirmwareUpdateTabTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsAreDeclaredInOrder();
    void signalsAreDeclaredInOrder();
    void classesHaveTheirBases();
    void freshTabTellsHowToPrepare();
    void freshTabIsIdle();
    void widgetsAreChildrenInOrder();
    void workerHasNoParent();
    void everyTextButTheRuleIsTranslated();

    void infoFollowsTheNewestLine();
    void progressTakesMaximumAndValue_data();
    void progressTakesMaximumAndValue();
    void buttonFollowsTheState();
    void endOfUpdateIsLogged_data();
    void endOfUpdateIsLogged();

    void workerReportsInOrder();
    void workerSignalsReachTheTab();
    void pressRunsAnUpdate();
    void secondPressRunsAnotherUpdate();
    void updateRunsAtNormalPriority();
    void disabledButtonCannotBePressed();
    void enterStartsNoUpdate();
    void buttonComesBackAfterTheThreadHasEnded();
    void destroyedTabWaitsForTheUpdate();
    void destroyedIdleTabTakesItsWorkerAlong();

private:
    bool isIdle() const;
    bool isFresh() const;
    void press();

    QStringList m_warnings;
    std::unique_ptr<FirmwareUpdateTab> m_tab;
};

void FirmwareUpdateTabTest::init()
{
    m_warnings.clear();
    threadWarnings = &m_warnings;
    qInstallMessageHandler(collectThreadWarnings);
    m_tab = std::make_unique<FirmwareUpdateTab>();
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void FirmwareUpdateTabTest::cleanup()
{
    m_tab.reset();
    qInstallMessageHandler(nullptr);
    QCOMPARE(m_warnings, QStringList());
}

bool FirmwareUpdateTabTest::isIdle() const
{
    return m_tab->updateButton->isEnabled() && !m_tab->worker->isRunning();
}

bool FirmwareUpdateTabTest::isFresh() const
{
    const QProgressBar &bar = *m_tab->progress;
    return isIdle() && bar.minimum() == 0 && bar.maximum() == 1 && bar.value() == 0;
}

void FirmwareUpdateTabTest::press()
{
    QTest::mouseClick(m_tab->updateButton, Qt::LeftButton);
}

void FirmwareUpdateTabTest::slotsAreDeclaredInOrder()
{
    QCOMPARE(declaredMethods(FirmwareUpdateTab::staticMetaObject),
             (QStringList{"slot void public push_update()", "slot void public info(QString) msg",
                          "slot void public setEnabledButtons(bool) stan",
                          "slot void public setProgress(int,int) ile,max",
                          "slot void public print_error(int) err"}));
}

void FirmwareUpdateTabTest::signalsAreDeclaredInOrder()
{
    QCOMPARE(declaredMethods(UpdateThread::staticMetaObject),
             (QStringList{"signal void public log(QString)",
                          "signal void public set_progress(int,int) ile,max",
                          "signal void public error(int) err"}));
}

void FirmwareUpdateTabTest::classesHaveTheirBases()
{
    QCOMPARE(QString(m_tab->metaObject()->className()), QString("FirmwareUpdateTab"));
    QCOMPARE(FirmwareUpdateTab::staticMetaObject.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(QString(m_tab->worker->metaObject()->className()), QString("UpdateThread"));
    QCOMPARE(UpdateThread::staticMetaObject.superClass(), &QThread::staticMetaObject);
}

void FirmwareUpdateTabTest::freshTabTellsHowToPrepare()
{
    const QStringList shown = m_tab->console->toPlainText().split('\n');
    QCOMPARE(shown.mid(0, 2), (QStringList{"First turn off anti-virus software.",
                                           "Next press \"Update Firmware\" to update firmware."}));
    COMPARE_WHOLE_LOG(QStringList());
}

void FirmwareUpdateTabTest::freshTabIsIdle()
{
    QVERIFY(isFresh());
    QCOMPARE(m_tab->updateButton->text(), QString("Update Firmware"));
    QVERIFY(m_tab->console->isReadOnly());
    QCOMPARE(m_tab->console->minimumWidth(), 400);
}

void FirmwareUpdateTabTest::widgetsAreChildrenInOrder()
{
    for (const QWidget *child :
         {static_cast<QWidget *>(m_tab->console), static_cast<QWidget *>(m_tab->progress),
          static_cast<QWidget *>(m_tab->updateButton)})
        QCOMPARE(child->parentWidget(), m_tab.get());
    QCOMPARE(itemsOf(*m_tab->buttonLayout), QList<QObject *>{m_tab->updateButton});
    QCOMPARE(itemsOf(*m_tab->consoleLayout), QList<QObject *>{m_tab->console});
    QCOMPARE(itemsOf(*m_tab->progressLayout), QList<QObject *>{m_tab->progress});
    QCOMPARE(itemsOf(*m_tab->mainLayout),
             (QList<QObject *>{m_tab->buttonLayout, m_tab->consoleLayout, m_tab->progressLayout}));
    QCOMPARE(m_tab->layout(), m_tab->mainLayout);
}

void FirmwareUpdateTabTest::workerHasNoParent()
{
    QVERIFY(m_tab->worker);
    QVERIFY(!m_tab->worker->parent());
    QVERIFY(!m_tab->worker->isRunning());
}

void FirmwareUpdateTabTest::everyTextButTheRuleIsTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    m_tab = std::make_unique<FirmwareUpdateTab>();
    QCOMPARE(m_tab->updateButton->text(), QString("[FirmwareUpdateTab]Update Firmware"));
    m_tab->push_update();
    QTRY_VERIFY(isIdle());
    m_tab->print_error(0);

    const QString tab = "[FirmwareUpdateTab]";
    const QStringList lines = {tab + kOpening[0],
                               tab + kOpening[1],
                               tab + kOpening[2],
                               tab + "Starting update firmware , pelase wait...",
                               "[UpdateThread]Update firmware successful.",
                               tab + ">Success!",
                               "<hr><br>",
                               tab + kNothingSent,
                               tab + ">Operation failure.",
                               "<hr><br>"};
    QCOMPARE(m_tab->console->toPlainText(), plainLog(lines));
    QCOMPARE(m_tab->console->toHtml(), richLog(lines));
}

void FirmwareUpdateTabTest::infoFollowsTheNewestLine()
{
    m_tab->console->selectAll();
    m_tab->info("newest");
    COMPARE_WHOLE_LOG(QStringList{"newest"});
    QVERIFY(!m_tab->console->textCursor().hasSelection());
}

void FirmwareUpdateTabTest::progressTakesMaximumAndValue_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("maximum");
    QTest::newRow("half") << 50 << 100;
    QTest::newRow("full") << 7 << 7;
    QTest::newRow("none") << 0 << 9;
    QTest::newRow("large") << 2147483646 << 2147483647;
}

void FirmwareUpdateTabTest::progressTakesMaximumAndValue()
{
    QFETCH(int, value);
    QFETCH(int, maximum);
    m_tab->progress->setRange(3, 5);
    m_tab->setProgress(value, maximum);
    QCOMPARE(m_tab->progress->minimum(), 0);
    QCOMPARE(m_tab->progress->maximum(), maximum);
    QCOMPARE(m_tab->progress->value(), value);
}

void FirmwareUpdateTabTest::buttonFollowsTheState()
{
    for (const bool idle : {false, true, false}) {
        m_tab->setEnabledButtons(idle);
        QCOMPARE(m_tab->updateButton->isEnabled(), idle);
    }
    QVERIFY(m_tab->console->isEnabled());
}

void FirmwareUpdateTabTest::endOfUpdateIsLogged_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("failure") << 0 << QStringList{">Operation failure.", "<hr><br>"};
    QTest::newRow("success") << 1 << QStringList{">Success!", "<hr><br>", kNothingSent};
    QTest::newRow("neither") << 7 << QStringList{"<hr><br>"};
    QTest::newRow("negative") << -1 << QStringList{"<hr><br>"};
}

void FirmwareUpdateTabTest::endOfUpdateIsLogged()
{
    QFETCH(int, error);
    QFETCH(QStringList, lines);
    m_tab->setProgress(5, 9);
    m_tab->setEnabledButtons(false);
    m_tab->print_error(error);
    COMPARE_WHOLE_LOG(lines);
    QVERIFY(isFresh());
}

void FirmwareUpdateTabTest::workerReportsInOrder()
{
    UpdateThread thread;
    QStringList reports;
    connect(&thread, &UpdateThread::log, this, [&](const QString &text) { reports << text; });
    connect(&thread, &UpdateThread::set_progress, this,
            [&](int value, int maximum) { reports << QString("%1/%2").arg(value).arg(maximum); });
    connect(&thread, &UpdateThread::error, this,
            [&](int err) { reports << QString("error %1").arg(err); });
    thread.start();
    QVERIFY(thread.wait());
    QCOMPARE(reports, QStringList()); // queued until this thread looks
    QCoreApplication::processEvents();
    QCOMPARE(reports, (QStringList{"Update firmware successful.", "1/1", "error 1"}));
}

void FirmwareUpdateTabTest::workerSignalsReachTheTab()
{
    m_tab->setEnabledButtons(false);
    emit m_tab->worker->log("from the worker");
    emit m_tab->worker->set_progress(2, 4);
    QCOMPARE(m_tab->progress->value(), 2);
    QCOMPARE(m_tab->progress->maximum(), 4);
    emit m_tab->worker->error(0);
    COMPARE_WHOLE_LOG((QStringList{"from the worker", ">Operation failure.", "<hr><br>"}));
    QVERIFY(isFresh());
}

void FirmwareUpdateTabTest::pressRunsAnUpdate()
{
    const QSignalSpy progress(m_tab->progress, &QProgressBar::valueChanged);
    press();
    QVERIFY(!m_tab->updateButton->isEnabled());
    COMPARE_WHOLE_LOG(kUpdate.mid(0, 1));
    QTRY_VERIFY(m_tab->updateButton->isEnabled());
    COMPARE_WHOLE_LOG(kUpdate);
    QCOMPARE(progress.count(), 2);
    QCOMPARE(progress[0][0].toInt(), 1); // full, and back when the update has ended
    QCOMPARE(progress[1][0].toInt(), 0);
    QVERIFY(isFresh());
}

void FirmwareUpdateTabTest::secondPressRunsAnotherUpdate()
{
    const UpdateThread *worker = m_tab->worker;
    QStringList lines;
    for (int i = 0; i < 20; ++i) {
        press();
        lines += kUpdate;
        QTRY_VERIFY(m_tab->updateButton->isEnabled());
        COMPARE_WHOLE_LOG(lines);
        QVERIFY(isFresh());
    }
    QCOMPARE(m_tab->worker, worker);
}

void FirmwareUpdateTabTest::updateRunsAtNormalPriority()
{
    std::atomic<int> priority{-1};
    UpdateThread *worker = m_tab->worker;
    connect(
        worker, &UpdateThread::log, worker, [&] { priority = worker->priority(); },
        Qt::DirectConnection);
    press();
    QTRY_VERIFY(isIdle());
    QCOMPARE(priority.load(), static_cast<int>(QThread::NormalPriority));
}

void FirmwareUpdateTabTest::disabledButtonCannotBePressed()
{
    press();
    press();
    QTRY_VERIFY(isIdle());
    COMPARE_WHOLE_LOG(kUpdate);
}

// A button of a dialog would become its default button with the focus, and take every Enter.
void FirmwareUpdateTabTest::enterStartsNoUpdate()
{
    QDialog dialog;
    auto *tab = new FirmwareUpdateTab;
    QVBoxLayout layout(&dialog);
    layout.addWidget(tab);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    tab->console->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Return);
    tab->updateButton->setFocus();
    QTest::keyClick(&dialog, Qt::Key_Return);
    QVERIFY(tab->updateButton->isEnabled());
    QVERIFY(!tab->updateButton->isDefault());
    QTest::keyClick(tab->updateButton, Qt::Key_Space);
    QVERIFY(!tab->updateButton->isEnabled());
}

// The worker is held in its last signal until the button is enabled, or for a while: a button that
// comes back without waiting comes back over a thread that runs and cannot be started again.
void FirmwareUpdateTabTest::buttonComesBackAfterTheThreadHasEnded()
{
    constexpr int kHoldMs = 200;
    UpdateThread *worker = m_tab->worker;
    EnabledWatch watch(m_tab->updateButton, worker);
    connect(
        worker, &UpdateThread::error, worker, [&] { watch.enabled.tryAcquire(1, kHoldMs); },
        Qt::DirectConnection);
    press();
    QTRY_VERIFY(m_tab->updateButton->isEnabled());
    QVERIFY(worker->wait());
    QCOMPARE(watch.runningThen, QList<bool>{false});
    COMPARE_WHOLE_LOG(kUpdate);
}

void FirmwareUpdateTabTest::destroyedTabWaitsForTheUpdate()
{
    std::atomic<int> ended{0};
    connect(
        m_tab->worker, &UpdateThread::error, m_tab->worker, [&] { ++ended; }, Qt::DirectConnection);
    const QPointer<UpdateThread> worker = m_tab->worker;
    press();
    m_tab.reset();
    QCOMPARE(ended.load(), 1);
    QVERIFY(worker.isNull());
    QCoreApplication::processEvents(); // reports that are still queued reach nobody
}

void FirmwareUpdateTabTest::destroyedIdleTabTakesItsWorkerAlong()
{
    const QPointer<UpdateThread> worker = m_tab->worker;
    m_tab.reset();
    QVERIFY(worker.isNull());
}

GBDRIVER_TEST(FirmwareUpdateTabTest, gui)
#include "firmware_update_tab_test.moc"
