import QtQuick
import QtTest

import Quire

Item {
    id: root

    property string word: "georgia"

    width: 400
    height: 500

    MenuChoice {
        id: choice

        x: 20
        y: 20
        width: 200
        accessibleLabel: "App Font"
        choices: fixture.shell.appearance.fonts
        selectedWord: root.word
        onChosen: word => root.word = word
    }

    TestCase {
        name: "MenuChoice"
        when: windowShown

        function init() {
            root.word = "georgia";
            choice.forceActiveFocus();
        }

        function cleanup() {
            keyClick(Qt.Key_Escape);
            tryVerify(() => choice.activeFocus);
        }

        function test_itTellsItsNameAndWhatIsChosen() {
            compare(choice.Accessible.name, "App Font");
            compare(choice.Accessible.description, "Georgia");
        }

        function test_arrowKeysPressedRightAfterOpeningGoOnFromTheChoiceInForce() {
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(root.word, "gillSans");
        }

        function test_theListOpensOnTheChoiceInForce() {
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(root.word, "georgia");
            tryVerify(() => choice.activeFocus);
            keyClick(Qt.Key_Up);
            wait(200);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Return);
            compare(root.word, "charter");
        }

        function test_escapeLeavesTheChoice() {
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Escape);
            compare(root.word, "georgia");
        }

        function test_whatIsShownIsShownInItsOwnFace() {
            compare(choice.contentItem.font.family, "Georgia");
            root.word = "futura";
            compare(choice.contentItem.font.family, "Futura");
        }

        function test_oneThatIsNotOfferedLooksSo() {
            choice.enabled = false;
            verify(choice.opacity < 0.5);
            choice.enabled = true;
            compare(choice.opacity, 1);
        }
    }
}
