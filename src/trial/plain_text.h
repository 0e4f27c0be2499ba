// Texts that a user can show to anybody: without the folders of this computer, which often have
// somebody's name in them.
#pragma once

#include <QString>

// `text` with the names of `folder`, the temporary and the home folder taken out.
QString withoutPaths(const QString &text, const QString &folder);

// `folder` for people: "mapper, beside the program", or its last part.
QString folderText(const QString &folder);
