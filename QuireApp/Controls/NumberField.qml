// A whole number: typed, stepped with the arrow keys or the wheel. It takes
// what is typed as it is, for whoever saves it to judge; a field left empty is
// zero.

import QtQuick

import Quire

QuireTextField {
    id: field

    required property int value
    // What a step stays within.
    property int from: 1
    property int to: 100

    signal edited(int value)

    function typedValue(): int {
        return field.text.length > 0 ? parseInt(field.text, 10) : 0;
    }

    function step(by: int) {
        field.edited(Math.max(field.from, Math.min(field.to, field.typedValue() + by)));
        field.selectAll();
    }

    function showValue() {
        if (field.typedValue() !== field.value)
            field.text = field.value;
    }

    implicitWidth: 64
    horizontalAlignment: TextInput.AlignRight
    maximumLength: 6
    inputMethodHints: Qt.ImhDigitsOnly
    validator: RegularExpressionValidator {
        regularExpression: /[0-9]*/
    }

    onValueChanged: field.showValue()
    Component.onCompleted: field.showValue()
    onTextEdited: field.edited(field.typedValue())
    onActiveFocusChanged: if (field.activeFocus)
        field.selectAll()

    Keys.onUpPressed: field.step(1)
    Keys.onDownPressed: field.step(-1)

    WheelHandler {
        // Only where the reader is: a page that scrolls under the pointer changes no number.
        enabled: field.activeFocus
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            if (event.angleDelta.y !== 0)
                field.step(event.angleDelta.y > 0 ? 1 : -1);
        }
    }
}
