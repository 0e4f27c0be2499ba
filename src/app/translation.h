// Chooses the language of the program's texts: by the translation files that stand beside the
// program, never by the system's locale.
#pragma once

#include <QString>

class QTranslator;

// Returns: path of the translation file in `folder` that the program uses: Chinese before Japanese;
//          empty if there is neither.
QString chooseTranslation(const QString &folder);

// Loads the chosen file into `translator` and installs that on the application. A file that cannot
// be loaded is installed all the same and leaves every text in English.
// Returns: false if there is no file and nothing was installed.
// Owner:   the caller keeps `translator` alive as long as the application.
bool installTranslation(const QString &folder, QTranslator *translator);
