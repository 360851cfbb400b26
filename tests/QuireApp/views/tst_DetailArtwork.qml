import QtQuick
import QtTest

import Quire

Item {
    id: scene

    width: 260
    height: 340

    DetailArtwork {
        id: artwork

        anchors.centerIn: parent
        title: "Emma"
        source: fixture.cover("firebrick")
    }

    TestCase {
        name: "DetailArtwork"
        when: windowShown

        function test_theCoverStandsInItsFrameWithoutASpine() {
            compare(artwork.width, 190);
            compare(artwork.height, 286);
            compare(artwork.Accessible.name, "Cover for Emma");
            tryVerify(() => Qt.colorEqual(grabImage(scene).pixel(130, 170), "#b22222"));
            verify(Qt.colorEqual(grabImage(scene).pixel(37, 170), "#b22222"), "no spine");
        }
    }
}
