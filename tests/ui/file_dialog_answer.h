// Answers the next file dialog as a user would: pastes a path and presses Enter, or presses
// Escape.
//
// Make one before the action that opens the dialog; the dialog runs its own event loop, in which
// this object finds it as the active modal widget. Afterwards it tells what the dialog looked like.
#pragma once

#include <QFileDialog>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class FileDialogAnswer : public QObject
{
    Q_OBJECT

public:
    // `path`: absolute path to give; empty to cancel the dialog.
    explicit FileDialogAnswer(const QString &path);

    bool wasAsked = false;
    QString caption;
    QStringList filters;
    QString folder; // where the dialog opened
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    QFileDialog::FileMode fileMode = QFileDialog::AnyFile;
    QWidget *parent = nullptr;

private:
    void lookForDialog();
    void answer(QFileDialog *dialog);

    QString m_path;
    QTimer m_poll;
};
