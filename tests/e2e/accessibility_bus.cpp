#include "accessibility_bus.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QtTest>

namespace
{

constexpr int kStartMs = 30000;
const QString kAccessible = "org.a11y.atspi.Accessible";
const QString kObjectEvents = "org.a11y.atspi.Event.Object";

} // namespace

const QString AccessibilityBus::kInsertedText = "inserted text";
const AccessibilityBus::Place AccessibilityBus::kRoot = {"org.a11y.atspi.Registry",
                                                         "/org/a11y/atspi/accessible/root"};
const AccessibilityBus::Place AccessibilityBus::kRegistry = {"org.a11y.atspi.Registry",
                                                             "/org/a11y/atspi/registry"};

AccessibilityBus::~AccessibilityBus()
{
    m_sessionBus.terminate();
    if (m_sessionBus.state() != QProcess::NotRunning && !m_sessionBus.waitForFinished(kStartMs))
        m_sessionBus.kill();
}

QString AccessibilityBus::startSession()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", m_runtimeFolder.path());
    // The user's own desktop, if there is one, must not be told of this bus.
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    m_sessionBus.setProcessEnvironment(environment);
    m_sessionBus.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
    while (!m_sessionBus.canReadLine()) {
        if (!m_sessionBus.waitForReadyRead(kStartMs))
            return "dbus-daemon cannot be started (" + m_sessionBus.errorString() +
                   "); install the package dbus-daemon";
    }
    const QByteArray address = m_sessionBus.readLine().trimmed();
    m_sessionAddress = QString::fromLatin1(address);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    return QString();
}

QString AccessibilityBus::listen()
{
    QDBusConnection session = QDBusConnection::connectToBus(m_sessionAddress, "session");
    const QDBusMessage found = session.call(QDBusMessage::createMethodCall(
        "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
    if (found.type() != QDBusMessage::ReplyMessage)
        return "There is no accessibility bus (" + found.errorMessage() +
               "); install the package at-spi2-core";

    m_bus = QDBusConnection::connectToBus(found.arguments().value(0).toString(), "accessibility");
    m_bus.connect(QString(), QString(), kObjectEvents, "TextChanged", this,
                  SLOT(onTextChanged(QDBusMessage)));
    m_bus.connect(QString(), QString(), kObjectEvents, "StateChanged", this,
                  SLOT(onStateChanged(QDBusMessage)));
    if (!QTest::qWaitFor([this] { return objects().size() > 1; }, kStartMs))
        return "No program comes to the accessibility bus.";
    // Programs send only what somebody has registered for. One that is just coming might have asked
    // already and not yet be told of more.
    for (const char *event : {"object:text-changed:insert", "object:state-changed:showing"}) {
        ask(kRegistry, "org.a11y.atspi.Registry", "RegisterEvent",
            {QString(event), QStringList(), QString()});
    }
    return QString();
}

QVector<SpokenObject> AccessibilityBus::objects()
{
    QVector<SpokenObject> found;
    addWithChildren(kRoot, &found);
    return found;
}

QVariant AccessibilityBus::ask(const Place &place, const QString &interface, const QString &method,
                               const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(place.program, place.path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(message);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
}

SpokenObject AccessibilityBus::describe(const Place &place)
{
    const QVariant name =
        ask(place, "org.freedesktop.DBus.Properties", "Get", {kAccessible, "Name"});
    return {ask(place, kAccessible, "GetRoleName").toString(),
            name.value<QDBusVariant>().variant().toString()};
}

void AccessibilityBus::addWithChildren(const Place &place, QVector<SpokenObject> *found)
{
    *found << describe(place);
    const QVariant answer = ask(place, kAccessible, "GetChildren");
    if (!answer.isValid())
        return;
    const auto children = answer.value<QDBusArgument>();
    children.beginArray();
    while (!children.atEnd()) {
        QString program;
        QDBusObjectPath path;
        children.beginStructure();
        children >> program >> path;
        children.endStructure();
        addWithChildren({program, path.path()}, found);
    }
    children.endArray();
}

// Arguments of an event: the detail, two numbers, a value, and more that differs between versions.
void AccessibilityBus::onTextChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.value(0).toString() == "insert")
        m_events << SpokenObject{kInsertedText,
                                 arguments.value(3).value<QDBusVariant>().variant().toString()};
}

void AccessibilityBus::onStateChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.value(0).toString() == "showing" && arguments.value(1).toInt() == 1)
        m_events << describe({message.service(), message.path()});
}
