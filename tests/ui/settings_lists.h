// The lists of the settings box and its tick box, from the top.
#pragma once

#include "ui/settings.h"

#include <QCheckBox>
#include <QComboBox>

struct SettingsLists {
    explicit SettingsLists(const Settings &box)
    {
        const auto lists = box.findChildren<QComboBox *>();
        if (lists.size() != 4)
            qFatal("the settings have %d lists", static_cast<int>(lists.size()));
        system = lists[0];
        item1 = lists[1];
        item2 = lists[2];
        item3 = lists[3];
        verify = box.findChild<QCheckBox *>();
        if (verify == nullptr)
            qFatal("the settings have no tick box");
    }

    QComboBox *system;
    QComboBox *item1;
    QComboBox *item2;
    QComboBox *item3;
    QCheckBox *verify;
};
