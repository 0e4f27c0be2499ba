// Why a file of the user's could not be written or read. Words for people: trust/words.h.
#pragma once

#include <QString>

enum class FileFault {
    None,

    // Of a file that was to be written.
    NameNotRepresentable, // in the system's 8-bit encoding
    IsFolder,
    NoFolder, // that it would lie in
    Exists,   // and is to be kept
    NotMade,  // not even begun
    NotWritten,
    NotHeld,    // what was read back is something else
    NotRenamed, // given its name

    // Of a file that was to be read.
    ReadsFolder,
    ReadsNoFile, // a pipe or a device: what it gives may never end
    TooLarge,
    NotRead
};

struct [[nodiscard]] FileTrouble {
    FileFault fault = FileFault::None;
    QString path;
    // Of NotMade, NotWritten and NotRenamed what the seam said, a sentence with the path in it but
    // for its full stop; of NotRead the system's own text.
    QString systemText;

    bool isNone() const { return fault == FileFault::None; }
};
