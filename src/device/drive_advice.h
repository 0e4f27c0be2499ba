// What a user of this system can do when the reader is not found.
#pragma once

#include <QStringList>

// Lines for people.
QStringList noReaderAdvice();

// Why drives that the user may think of were not even looked at; empty if none were left out.
QStringList scanNotes();
