// What tests of the main tab compare: what its console shows with the log lines that should have
// been appended to it, and what is the same in every report of the Info action.
#pragma once

#include "ui/console.h"
#include "ui/main_tab.h"

#include <QStringList>

class Settings;

// What a fresh main tab says, line by line.
QStringList greetingLines();

// A console that got `lines`, one append each, shows this.
QString plainLog(const QStringList &lines);
QString richLog(const QStringList &lines);

// The tab's log without its judgements, which stand behind the rules of jobs.
struct ShownLog {
    QString text;
    QString html;
};
ShownLog logOf(const MainTab &tab);

// From the first judgement on: all lines but the rules. Of a log with one job: its judgement.
QStringList judgementsOf(const MainTab &tab);

// The tab's whole log but for judgements must be the greeting and then `lines`: text, paragraphs,
// rules and colours.
#define COMPARE_LOG(tab, lines)                                                                    \
    do {                                                                                           \
        const QStringList expectedLog = greetingLines() + QStringList(lines);                      \
        QCOMPARE(logOf(tab).text, plainLog(expectedLog));                                          \
        QCOMPARE(logOf(tab).html, richLog(expectedLog));                                           \
    } while (false)

// The tab is idle: no thread runs and the actions can be pressed.
bool isIdle(const MainTab &tab);
// A job runs: only Cancel can be pressed.
bool isBusy(const MainTab &tab);

// What the report says of the reader of a fixture.
QStringList deviceLines();
// What it says when neither bus shows a header.
QStringList nothingFoundLines();

// What it asks the reader for, as ReaderBench::traffic() tells.
QStringList gbHeaderTraffic();
QStringList gbaHeaderTraffic();

// What the four lists of the settings box show.
QStringList shownSettings(const Settings &settings);
