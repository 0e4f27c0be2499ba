// Compares what a console shows with the log lines that should have been appended to it.
#pragma once

#include "ui/console.h"
#include "ui/main_tab.h"

#include <QStringList>

// What a fresh main tab says, line by line.
QStringList greetingLines();

// A console that got `lines`, one append each, shows this.
QString plainLog(const QStringList &lines);
QString richLog(const QStringList &lines);

// The tab's whole log must be the greeting and then `lines`: text, paragraphs, rules and colours.
#define COMPARE_LOG(tab, lines)                                                                    \
    do {                                                                                           \
        const QStringList expectedLog = greetingLines() + QStringList(lines);                      \
        QCOMPARE((tab).console->toPlainText(), plainLog(expectedLog));                             \
        QCOMPARE((tab).console->toHtml(), richLog(expectedLog));                                   \
    } while (false)

// The tab is idle: no thread runs and the actions can be pressed.
bool isIdle(const MainTab &tab);
// A job runs: only Cancel can be pressed.
bool isBusy(const MainTab &tab);
