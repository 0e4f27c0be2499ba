// Runs a test program on a real X server: starts Xvfb on a free display, runs the program with the
// X11 platform on it, and ends with the program's exit code. Without Xvfb the test fails.
//
// Usage: xvfb_run PROGRAM [argument...]
#include <QCoreApplication>
#include <QProcess>

#include <cstdio>

namespace
{
constexpr int kServerStartMs = 30000;
constexpr int kServerEndMs = 10000;

int fail(const QString &message)
{
    std::fprintf(stderr, "xvfb_run: %s\n", qPrintable(message));
    return 1;
}

// Waits until the server has written the number of its display.
// Returns: the display (":3"), empty if the server ended or stayed silent.
QString readDisplay(QProcess *server)
{
    while (!server->canReadLine()) {
        if (!server->waitForReadyRead(kServerStartMs))
            return QString();
    }
    return QLatin1Char(':') + QString::fromLatin1(server->readLine().trimmed());
}

int runOn(const QString &display, QStringList command)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", display);
    environment.insert("QT_QPA_PLATFORM", "xcb");
    // The libraries under the X11 platform leave memory behind at exit, some of them already
    // unloaded by then and so without a name. On the offscreen platform the same tests look for
    // leaks.
    environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    const QString name = command.takeFirst();
    program.start(name, command);
    if (!program.waitForFinished(-1) || program.exitStatus() != QProcess::NormalExit)
        return fail(name + ": " + program.errorString());
    return program.exitCode();
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList command = QCoreApplication::arguments().mid(1);
    if (command.isEmpty())
        return fail("usage: xvfb_run PROGRAM [argument...]");

    QProcess server;
    server.setProcessChannelMode(QProcess::SeparateChannels);
    server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                          "-noreset"});
    if (!server.waitForStarted())
        return fail("Xvfb cannot be started (" + server.errorString() +
                    "); install the package xvfb");
    const QString display = readDisplay(&server);
    if (display.isEmpty())
        return fail("Xvfb tells no display: " +
                    QString::fromLocal8Bit(server.readAllStandardError()));

    const int result = runOn(display, command);
    server.terminate();
    if (!server.waitForFinished(kServerEndMs))
        server.kill();
    return result;
}
