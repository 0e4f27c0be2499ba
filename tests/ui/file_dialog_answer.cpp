#include "file_dialog_answer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QtTest>

FileDialogAnswer::FileDialogAnswer(const QString &path) : m_path(path)
{
    connect(&m_poll, &QTimer::timeout, this, &FileDialogAnswer::lookForDialog);
    m_poll.start(10);
}

void FileDialogAnswer::lookForDialog()
{
    QWidget *modal = QApplication::activeModalWidget();
    if (auto *question = qobject_cast<QMessageBox *>(modal)) {
        // The file exists: yes, replace it.
        QTest::keyClick(question->button(QMessageBox::Yes), Qt::Key_Space);
        return;
    }
    auto *dialog = qobject_cast<QFileDialog *>(modal);
    if (dialog && dialog->isVisible() && !wasAsked)
        answer(dialog);
}

void FileDialogAnswer::answer(QFileDialog *dialog)
{
    wasAsked = true;
    caption = dialog->windowTitle();
    filters = dialog->nameFilters();
    folder = dialog->directory().absolutePath();
    acceptMode = dialog->acceptMode();
    fileMode = dialog->fileMode();
    parent = dialog->parentWidget();
    if (m_path.isEmpty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    auto *nameEdit = dialog->findChild<QLineEdit *>("fileNameEdit");
    QVERIFY2(nameEdit, "the file dialog has no field for the file's name");
    // Pasted rather than typed letter by letter, which would open a list of completions each time.
    nameEdit->selectAll();
    nameEdit->insert(m_path);
    // Pressing Enter may ask whether to replace a file and only return after the answer. A timer
    // does not fire anew from within itself, so looking for that question needs a fresh one.
    m_poll.start();
    QTest::keyClick(nameEdit, Qt::Key_Return);
}
