import QtQuick
import QtTest

import Quire

Item {
    id: scene

    width: 142
    height: 218

    Component {
        id: remoteCover

        RemoteCoverImage {
            anchors.fill: parent
            title: "Emma"
        }
    }

    TestCase {
        name: "RemoteCoverImage"
        when: windowShown

        function colourAt(x, y) {
            return grabImage(scene).pixel(x, y);
        }

        function test_aCoverFillsItsFrameWhenItHasCome() {
            const image = createTemporaryObject(remoteCover, scene, { url: fixture.coverAddress("#b22222") });
            verify(!image.source.present);
            tryVerify(() => Qt.colorEqual(colourAt(71, 109), "#b22222"));
            verify(Qt.colorEqual(colourAt(10, 109), "#b22222"), "20 by 30 fills 142 by 218");
            compare(image.paintedRect, Qt.rect(0, 0, 142, 218));
        }

        function test_anotherAddressShowsAnotherCoverAndNeverTheFormer() {
            const image = createTemporaryObject(remoteCover, scene, { url: fixture.coverAddress("#b22222") });
            tryVerify(() => Qt.colorEqual(colourAt(71, 109), "#b22222"));
            image.url = fixture.coverAddress("#008080");
            verify(!image.source.present);
            tryVerify(() => Qt.colorEqual(colourAt(71, 109), "#008080"));
            image.url = "";
            verify(!image.source.present);
        }

        function test_whatIsNoPictureOrNoWebAddressLeavesThePlaceholder_data() {
            return [
                { tag: "a page", url: fixture.pageAddress() },
                { tag: "a file", url: "file:///usr/share/icons/hicolor/index.theme" },
                { tag: "a resource", url: "qrc:/qt/qml/Quire/RemoteCoverImage.qml" },
                { tag: "data", url: "data:image/gif;base64,R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=" },
                { tag: "nothing", url: "" },
            ];
        }

        function test_whatIsNoPictureOrNoWebAddressLeavesThePlaceholder(data) {
            const image = createTemporaryObject(remoteCover, scene, { url: data.url });
            const loaded = createTemporaryObject(remoteCover, scene, { url: fixture.coverAddress("#b22222") });
            tryVerify(() => loaded.source.present);
            wait(50);
            verify(!image.source.present);
        }

        function test_aCoverThatIsScrolledBackToIsNotFetchedAgain() {
            const address = fixture.coverAddress("#123456");
            const first = createTemporaryObject(remoteCover, scene, { url: address });
            tryVerify(() => first.source.present);
            const requests = fixture.coverRequests();
            const second = createTemporaryObject(remoteCover, scene, { url: address });
            verify(second.source.present);
            compare(fixture.coverRequests(), requests);
        }
    }
}
