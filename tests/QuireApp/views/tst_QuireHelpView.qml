import QtQuick
import QtQuick.Templates as T
import QtTest

import Quire

Item {
    id: root

    width: 720
    height: 680

    QuireHelpView {
        id: view

        anchors.fill: parent
        help: fixture.shell.help
    }

    TestCase {
        name: "QuireHelpView"
        when: windowShown

        function isDark(image, x, y) {
            const pixel = image.pixel(x, y);
            return pixel.r + pixel.g + pixel.b < 2.7;
        }

        // The bar stands over the right edge, where nothing else is.
        function test_aBarTellsThatThereIsMoreBelow() {
            wait(1200); // one that only moves would have faded
            verify(isDark(grabImage(root), root.width - 6, 20));
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Tab); // the buttons at the end
            tryVerify(() => {
                const image = grabImage(root);
                return !isDark(image, root.width - 6, root.height - 20) && !isDark(image, root.width - 6, 20);
            }, 3000);
        }
    }
}
