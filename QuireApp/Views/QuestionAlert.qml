// What the program tells and wants an answer to.

import QtQuick

import Quire

ModalAlert {
    id: alert

    required property AlertViewModel alerts
    // Another window shows it meanwhile.
    required property bool wanted

    objectName: "questionAlert"
    title: alert.alerts.title
    message: alert.alerts.message
    buttons: alert.alerts.buttons
    visible: alert.wanted && alert.alerts.isOpen
    onPressed: button => alert.alerts.press(button)
    onClosed: {
        if (alert.wanted && alert.alerts.isOpen)
            alert.alerts.putAway();
        alert.visible = Qt.binding(() => alert.wanted && alert.alerts.isOpen);
    }
}
