// What a screen reader gets of programs: an accessibility bus of its own, the objects on it, and
// the events that they send. Without dbus-daemon and at-spi2-core a test that needs it fails.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QVector>

struct SpokenObject {
    QString role; // "push button"
    QString name;
};

class AccessibilityBus : public QObject
{
    Q_OBJECT

public:
    ~AccessibilityBus() override;

    // Starts a session, and puts what programs need to find it into the environment of this
    // process.
    // Returns: what is missing; empty on success.
    QString startSession();
    // Starts the session's accessibility bus, waits for a program on it, and listens. The program
    // must run by now: those of Qt 5 that find the bus when they start may use it before they are
    // connected to it.
    // Returns: as above.
    QString listen();

    // All objects of all programs, each behind the one that it belongs to.
    QVector<SpokenObject> objects();

    // Every text that came into an object, under kInsertedText, and every object that began to
    // show, as it was then; since the start, in the order in which they came.
    const QVector<SpokenObject> &events() const { return m_events; }
    static const QString kInsertedText;

private slots:
    void onTextChanged(const QDBusMessage &message);
    void onStateChanged(const QDBusMessage &message);

private:
    // An object's program, by its name on the bus, and path.
    struct Place {
        QString program;
        QString path;
    };
    static const Place kRoot;
    static const Place kRegistry;

    // Returns: the first value of the answer; invalid where there is none, as of an object that has
    // just gone.
    QVariant ask(const Place &place, const QString &interface, const QString &method,
                 const QVariantList &arguments = {});
    SpokenObject describe(const Place &place);
    void addWithChildren(const Place &place, QVector<SpokenObject> *found);

    QTemporaryDir m_runtimeFolder;
    QProcess m_sessionBus;
    QString m_sessionAddress;
    QDBusConnection m_bus{QString()};
    QVector<SpokenObject> m_events;
};
