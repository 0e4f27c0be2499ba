#include "ui/announcement.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace
{

// Screen readers on Linux speak a notification when it begins to show. Alerts, which other systems
// may have a use for, do not get to their bus.
QAccessibleInterface *notificationFace(const QString & /*className*/, QObject *object)
{
    auto *announcement = dynamic_cast<Announcement *>(object);
    return announcement == nullptr ? nullptr
                                   : new QAccessibleWidget(announcement, QAccessible::Notification);
}

} // namespace

Announcement::Announcement(QWidget *window) : QWidget(window)
{
    QAccessible::installFactory(notificationFace); // once, however often it is called
    setFixedSize(0, 0);
    hide();
}

void Announcement::say(const QString &words)
{
    hide();
    setAccessibleName(words);
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
