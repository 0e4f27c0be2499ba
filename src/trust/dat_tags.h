// A look at the tags of an XML file before a parser sees them.
//
// The look and the parser have to see the same text, so the bytes are made into text here, once:
// some encodings hide every bracket from whoever takes the bytes for letters.
//
// Thread: pure functions; any thread.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The text of an XML file: in the encoding of its byte order mark; without one in that which it
// declares; else in UTF-8, as for an encoding that is not known.
// Returns: nothing if the bytes are no text in it.
std::optional<QString> xmlText(const QByteArray &bytes);

// Of one element; DAT files have ten at most.
constexpr int kMostAttributes = 64;

enum class TagFault {
    None,
    // More than kMostAttributes: the parser compares each with all others, so that a file of a few
    // megabytes could keep it busy for hours.
    Crowded,
    // A document type with declarations in the file itself: a few lines of entities can stand for
    // gigabytes.
    Declarations
};

// The first fault.
TagFault tagFaultOf(const QString &xml);
