#include "trust/file_rename.h"

#include <QDir>

#include <windows.h>

namespace
{

// A virus scanner holds a new file for a moment.
constexpr int kAttempts = 20;
constexpr DWORD kPauseMs = 50;

// Without a full stop, as other systems have it.
QString textOf(DWORD error)
{
    wchar_t text[256] = {};
    // 0: the system has no text.
    if (FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       0, text, sizeof text / sizeof text[0], nullptr) == 0)
        return QStringLiteral("error %1").arg(error);
    QString sentence = QString::fromWCharArray(text).trimmed();
    if (sentence.endsWith(QLatin1Char('.')))
        sentence.chop(1);
    return sentence;
}

std::wstring nativeName(const QString &path)
{
    return QDir::toNativeSeparators(path).toStdWString();
}

} // namespace

FileTrouble renameFile(const QString &from, const QString &to, bool replaces)
{
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0U);
    DWORD error = ERROR_SUCCESS;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        // FALSE: failed.
        if (MoveFileExW(nativeName(from).c_str(), nativeName(to).c_str(), flags) != FALSE)
            return {};
        error = GetLastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
            break;
        Sleep(kPauseMs);
    }
    return {FileFault::NotRenamed, to, textOf(error)};
}
