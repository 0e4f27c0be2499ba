// The encoding of the system's 8-bit texts: of paths, of messages and of the game table.
#pragma once

// Has Qt take the program's own code page for it. On Windows that is UTF-8 where the manifest's
// wish for it is heard (Windows 10 from version 1903), and Qt 5 asks for conversions that are not
// defined for UTF-8. On other systems Qt asks the locale, and this does nothing.
//
// Call it in main(), before the application object and any other thread.
void useSystemEncoding();
