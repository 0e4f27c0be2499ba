#include "cli_case.h"

#include "reader_folder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

const QByteArray kAnyBytes = "whatever bytes there are";
const QByteArray kNoFile = "no file";

namespace
{

// One of the two runs, "DIR" put in place of its folder in what it said.
struct Finished {
    ProgramResult result;
    Files files; // afterwards
};

Files filesIn(const QString &folder)
{
    Files found;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        found.insert(QDir(folder).relativeFilePath(path), contentOf(path));
    }
    return found;
}

void lay(const CliCase &row, const QDir &folder)
{
    for (auto file = row.files.begin(); file != row.files.end(); ++file) {
        const QFileInfo info(folder, file.key());
        if (!folder.mkpath(info.path()))
            qFatal("cannot make %s", qPrintable(info.path()));
        putFile(info.filePath(), file.value());
    }
    if (row.isAlone && !QFile::copy(CLI_PROGRAM, folder.filePath("gbdriver-cli")))
        qFatal("cannot copy the program");
}

ReaderChoice choiceFor(const QString &reader, const QDir &folder,
                       std::unique_ptr<ReaderFolder> *drive)
{
    const QString kind = reader.section(':', 0, 0);
    QString value = reader;
    value.replace("DIR", folder.path());
    if (kind == "drives")
        return {{}, value.section(':', 1)};
    if (kind != "folder" && kind != "mute")
        return {value, {}};
    *drive = std::make_unique<ReaderFolder>(reader.section(':', 1).toUInt());
    if (kind == "mute")
        (*drive)->refuseCommands();
    return (*drive)->choice();
}

Finished runOnce(const CliCase &row, const QString &more)
{
    const QTemporaryDir folder;
    const QDir dir(QFileInfo(folder.path()).canonicalFilePath());
    lay(row, dir);
    std::unique_ptr<ReaderFolder> drive;
    const ReaderChoice choice = choiceFor(row.reader, dir, &drive);
    const QString words = QString(row.arguments).replace("DIR", dir.path());
    const QString program = row.isAlone ? dir.filePath("gbdriver-cli") : QString(CLI_PROGRAM);
    Finished run{runProgram(program, words + more, choice), filesIn(dir.path())};
    if (row.isAlone)
        run.files.remove("gbdriver-cli");
    run.result.out.replace(dir.path(), "DIR");
    run.result.err.replace(dir.path(), "DIR");
    return run;
}

// "DIR/dump.gb: 65536 bytes, SHA-1 ..."
QString factsOf(const QString &name, const Files &files)
{
    const QByteArray bytes = files.value(name);
    const QByteArray sha1 = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    return QString("DIR/%1: %2 bytes, SHA-1 %3").arg(name).arg(bytes.size()).arg(QString(sha1));
}

QString usedIn(const QString &text)
{
    const QStringList lines = text.split('\n');
    QStringList rows;
    for (int at = lines.indexOf("Using:") + 1;
         at > 0 && at < lines.size() && lines[at].startsWith("  "); ++at)
        rows << lines[at].simplified();
    return rows.join(", ");
}

// `place` moves behind what was found.
bool fits(const TextPart &part, const QString &wanted, const QString &text, int *place)
{
    switch (part.how) {
    case TextPart::Whole:
        return text == wanted;
    case TextPart::Begin:
        return text.startsWith(wanted);
    case TextPart::End:
        return text.endsWith(wanted);
    case TextPart::Absent:
        return !text.contains(wanted);
    case TextPart::Used:
        return usedIn(text) == wanted;
    case TextPart::Inside:
        break;
    }
    const int found = text.indexOf(wanted, *place);
    *place = found + wanted.size();
    return found >= 0;
}

QStringList problemsOfText(const char *stream, const Texts &parts, const QString &text,
                           const Files &files)
{
    static const QRegularExpression kFacts("FACTS\\(([^)]+)\\)");
    static const char *const kHows[] = {
        "is not", "does not begin with", "does not hold in order", "does not end in",
        "holds",  "does not use"};
    QStringList problems;
    int place = 0;
    for (const TextPart &part : parts) {
        QString wanted = part.text;
        const QRegularExpressionMatch facts = kFacts.match(wanted);
        if (facts.hasMatch())
            wanted.replace(facts.captured(0), factsOf(facts.captured(1), files));
        if (!fits(part, wanted, text, &place))
            problems << QString("%1 %2 \"%3\":\n%4").arg(stream, kHows[part.how], wanted, text);
    }
    return problems;
}

// Takes the file that `name` means out of `found`.
bool takeFile(const QString &name, const QByteArray &bytes, Files *found)
{
    const QString pattern =
        QRegularExpression::anchoredPattern(QRegularExpression::escape(name).replace("\\*", ".*"));
    const QStringList names = QStringList(found->keys()).filter(QRegularExpression(pattern));
    if (names.size() != 1)
        return false;
    const QByteArray held = found->take(names[0]);
    return bytes == kAnyBytes || held == bytes;
}

QStringList problemsOfFiles(const CliCase &row, Files found)
{
    Files wanted = row.files;
    for (auto file = row.left.begin(); file != row.left.end(); ++file)
        wanted[file.key()] = file.value();
    for (auto file = row.left.begin(); file != row.left.end(); ++file) {
        if (file.value() == kNoFile)
            wanted.remove(file.key());
    }
    QStringList problems;
    for (auto file = wanted.begin(); file != wanted.end(); ++file) {
        if (!takeFile(file.key(), file.value(), &found))
            problems << "file " + file.key() + " is missing or holds something else";
    }
    if (!found.isEmpty())
        problems << "nobody expects " + QStringList(found.keys()).join(", ");
    return problems;
}

QVector<QJsonObject> objectsIn(const QString &lines)
{
    QVector<QJsonObject> objects;
    for (const QString &line : lines.split('\n', Qt::SkipEmptyParts))
        objects << QJsonDocument::fromJson(line.toLocal8Bit()).object();
    return objects;
}

bool isMatch(const QJsonObject &wanted, const QJsonObject &object)
{
    if (wanted.contains("event"))
        return object == wanted;
    for (auto key = wanted.begin(); key != wanted.end(); ++key) {
        if (key->isNull() ? object.contains(key.key()) : object.value(key.key()) != key.value())
            return false;
    }
    return true;
}

// What the event "verdict" says, as people are told it.
QString verdictText(const QJsonObject &event)
{
    QStringList reasons;
    for (const QJsonValue &reason : event["reasons"].toArray())
        reasons << reason.toString();
    if (event.contains("title"))
        reasons << QString("%1 (%2)").arg(event["title"].toString(), event["source"].toString());
    return QString("%1: %2\n%3: %4 bytes, SHA-1 %5\n")
        .arg(event["verdict"].toString(), reasons.join("; "), event["file"].toString())
        .arg(event["size"].toInt())
        .arg(event["sha1"].toString());
}

QStringList problemsOfJson(const CliCase &row, const Finished &text, const Finished &json)
{
    QStringList problems;
    if (!json.result.err.isEmpty())
        problems << "with --json standard error says " + json.result.err;
    const QVector<QJsonObject> objects = objectsIn(json.result.out);
    if (objects.isEmpty() || objects.last()["exitCode"].toInt(-1) != json.result.exitCode)
        problems << "\"end\" has another exit code: " + json.result.out;
    for (const QJsonObject &wanted : row.objects) {
        const auto matches = [&](const QJsonObject &object) { return isMatch(wanted, object); };
        if (std::count_if(objects.begin(), objects.end(), matches) != 1)
            problems << "not once in the events: " + QJsonDocument(wanted).toJson() +
                            json.result.out;
    }
    for (const QJsonObject &event : objects) {
        if (!event.contains("sha1") || event["event"] != "verdict")
            continue;
        const QString name = event["file"].toString().section('/', 1);
        if (factsOf(name, json.files) + '\n' != verdictText(event).section('\n', 1))
            problems << "the verdict does not speak of the file: " + verdictText(event);
        if (!text.result.out.contains(verdictText(event).section('\n', 0, 0) + '\n'))
            problems << "people are told another verdict: " + verdictText(event) + text.result.out;
    }
    return problems;
}

QStringList problemsOfEither(const CliCase &row, const Finished &run)
{
    QStringList problems = problemsOfFiles(row, run.files);
    if (codeOf(run.result) != row.code)
        problems << QString("exit code %1: ").arg(run.result.exitCode) + run.result.out +
                        run.result.err;
    // Whatever fails, a person is told why.
    if (run.result.out.isEmpty() && run.result.err.isEmpty())
        problems << "it says nothing";
    return problems;
}

} // namespace

QStringList problemsOf(const CliCase &row, QVector<EventRun> *runs)
{
    const Finished text = runOnce(row, "");
    QStringList problems = problemsOfEither(row, text);
    problems << problemsOfText("standard output", row.answer, text.result.out, text.files)
             << problemsOfText("standard error", row.problem, text.result.err, text.files);
    if (!row.hasJson)
        return problems;
    const Finished json = runOnce(row, " --json");
    problems << problemsOfEither(row, json).replaceInStrings(QRegularExpression("^"), "JSON: ")
             << problemsOfJson(row, text, json);
    runs->append({row.name, row.events, json.result.out.toLocal8Bit()});
    return problems;
}

#ifdef VALIDATOR
QVector<Validation> validate(const QVector<QByteArray> &runs)
{
    QTemporaryDir folder;
    QStringList names;
    for (const QByteArray &run : runs) {
        names << folder.filePath(QString::number(names.size()));
        putFile(names.last(), run);
    }
    QProcess validator;
    validator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    validator.start(PYTHON_PROGRAM, QStringList{VALIDATOR, SCHEMA} + names);
    constexpr int kDeadlineMs = 120 * 1000;
    if (!validator.waitForFinished(kDeadlineMs))
        qFatal("%s: %s", PYTHON_PROGRAM, qPrintable(validator.errorString()));
    QVector<Validation> results;
    for (const QJsonObject &result : objectsIn(QString::fromLocal8Bit(validator.readAll())))
        results.append(
            {result["definitions"].toVariant().toStringList(), result["problem"].toString()});
    return results;
}

QStringList problemsOfEvents(const QVector<EventRun> &runs, QStringList *seen)
{
    QVector<QByteArray> lines;
    for (const EventRun &run : runs)
        lines << run.lines;
    const QVector<Validation> results = validate(lines);
    if (results.size() != runs.size())
        return {QString("%1 of %2 runs were validated").arg(results.size()).arg(runs.size())};
    QStringList problems;
    for (int at = 0; at < runs.size(); ++at) {
        QStringList kinds = results[at].definitions;
        *seen << kinds;
        kinds.removeDuplicates();
        for (const char *common : {"log", "progress", "end"})
            kinds.removeAll(common);
        if (!results[at].problem.isEmpty())
            problems << runs[at].name + ": " + results[at].problem;
        else if (kinds.join(' ') != runs[at].events)
            problems << QString("%1: the events are \"%2\", not \"%3\"")
                            .arg(runs[at].name, kinds.join(' '), runs[at].events);
    }
    return problems;
}
#endif
