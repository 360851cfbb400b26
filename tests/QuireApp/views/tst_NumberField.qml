import QtQuick
import QtTest

import Quire

Item {
    id: root

    property int days: 3

    width: 200
    height: 100

    NumberField {
        id: field

        x: 10
        y: 10
        placeholderText: "Days"
        value: root.days
        to: 365
        onEdited: value => root.days = value
    }

    TestCase {
        name: "NumberField"
        when: windowShown

        function init() {
            root.days = 3;
            field.forceActiveFocus();
        }

        function type(digits) {
            field.selectAll();
            keyClick(Qt.Key_Delete);
            for (const digit of digits)
                keyClick(digit);
        }

        function test_showsItsValueAndIsNamedByItsPrompt() {
            compare(field.text, "3");
            compare(field.Accessible.name, "Days");
            compare(field.width, 64);
            root.days = 12;
            compare(field.text, "12");
        }

        function test_whatIsTypedIsTakenAsItIs() {
            type("400");
            compare(root.days, 400);
            compare(field.text, "400");
        }

        function test_onlyDigitsCanBeTyped() {
            type("1-a .5");
            compare(field.text, "15");
            compare(root.days, 15);
        }

        function test_anEmptyFieldIsZeroAndStaysEmpty() {
            type("");
            compare(root.days, 0);
            compare(field.text, "");
            root.days = 5;
            compare(field.text, "5");
        }

        function test_theArrowKeysStepWithinTheLimits() {
            keyClick(Qt.Key_Up);
            compare(root.days, 4);
            compare(field.text, "4");
            for (let i = 0; i < 5; ++i)
                keyClick(Qt.Key_Down);
            compare(root.days, 1);
            type("364");
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(root.days, 365);
        }

        function test_theWheelStepsOnlyWhereTheReaderIs() {
            mouseWheel(field, 30, 15, 0, 120);
            compare(root.days, 4);
            mouseWheel(field, 30, 15, 0, -120);
            mouseWheel(field, 30, 15, 0, -120);
            compare(root.days, 2);
            field.focus = false;
            mouseWheel(field, 30, 15, 0, 120);
            compare(root.days, 2);
        }

        function test_itIsReplacedByWhatIsTypedNext() {
            field.focus = false;
            field.forceActiveFocus(Qt.TabFocusReason);
            keyClick("7");
            compare(root.days, 7);
        }
    }
}
