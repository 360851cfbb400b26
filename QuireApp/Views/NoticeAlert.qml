// The report of the model, with one button.

import QtQuick

import Quire

ModalAlert {
    id: alert

    required property ActivityViewModel activity
    // Another window shows it meanwhile.
    required property bool wanted

    objectName: "noticeAlert"
    title: alert.activity.noticeTitle
    message: alert.activity.noticeMessage
    visible: alert.wanted && alert.activity.hasNotice
    onPressed: alert.close()
    onClosed: {
        if (alert.wanted)
            alert.activity.dismissNotice();
        alert.visible = Qt.binding(() => alert.wanted && alert.activity.hasNotice);
    }
}
