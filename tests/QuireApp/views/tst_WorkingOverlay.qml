import QtQuick
import QtTest

import Quire

Item {
    id: root

    property bool working: false
    property int presses: 0

    width: 1000
    height: 700

    DetailModalOverlay {
        id: panel

        title: "Add Book"
        visible: true
        panel: Item {
            BorderedButton {
                anchors.centerIn: parent
                width: 200
                height: 80
                text: "In the panel"
                onClicked: ++root.presses
            }
        }
    }
    WorkingOverlay {
        id: overlay

        shown: root.working
        label: "Adding Emma…"
    }
    ModalAlert {
        id: alert

        title: "Told"
        message: "Something happened."
        onPressed: alert.close()
    }

    TestCase {
        name: "WorkingOverlay"
        when: windowShown

        function init() {
            tryVerify(() => panel.opened);
            root.presses = 0;
        }

        function cleanup() {
            root.working = false;
            tryCompare(overlay, "visible", false);
        }

        function work() {
            root.working = true;
            tryVerify(() => overlay.opened);
        }

        function test_itStandsOverThePanelThatBeganTheWork() {
            mouseClick(root, 500, 350);
            compare(root.presses, 1);
            work();
            mouseClick(root, 500, 350);
            mouseClick(root, 5, 5); // beside the panel
            compare(root.presses, 1);
            verify(panel.visible);
            const image = grabImage(root);
            verify(Qt.colorEqual(image.pixel(500 - 130, 350), "#ffffff"), "its own panel, undimmed");
            compare(overlay.contentItem.Accessible.name, "Adding Emma…");
            compare(overlay.contentItem.Accessible.role, Accessible.AlertMessage);
        }

        function test_whatIsToldStandsOverIt() {
            alert.open();
            tryVerify(() => alert.opened);
            work(); // after the alert
            mouseClick(root, alert.x + alert.width - 40, alert.y + alert.height - 34);
            tryCompare(alert, "visible", false);
            verify(overlay.visible);
        }

        function test_escapeIsNotForIt() {
            work();
            keyClick(Qt.Key_Escape); // closes the panel, as it would without
            wait(300);
            verify(overlay.visible);
            panel.open();
        }

        function test_workThatEndsAndBeginsAgainIsShown() {
            work();
            root.working = false;
            wait(50); // it is leaving
            root.working = true;
            tryVerify(() => overlay.opened);
            tryCompare(overlay.contentItem.parent, "opacity", 1);
            root.working = false;
            tryCompare(overlay, "visible", false);
        }

        function test_itDoesNotJumpWithItsWords() {
            work();
            const before = [overlay.x, overlay.y, overlay.width, overlay.height].join();
            compare(before, "360,292,280,116");
        }
    }
}
